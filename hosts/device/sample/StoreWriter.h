// Writes a device's Messages store, of any generation, through prepared statements in one transaction.
// One thread at a time. Texts handed over are read during the call only.
// A failure is kept: later calls answer 0 and `finish` answers the sentence.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "hosts/device/sample/StoreFile.h"
#include "hosts/device/sample/StoreSchema.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {

struct HandleRow {
  std::string_view id;  // a number as +15550100142, an e-mail address, a short code
  std::string_view service = "iMessage";
  std::string_view personCentricId = {};  // empty: NULL
};

struct ChatRow {
  std::string_view guid;
  std::string_view identifier;
  std::string_view service = "iMessage";
  bool group = false;
  std::string_view displayName = {};  // empty: NULL, as a group without a name has it
  std::span<const std::int64_t> handles = {};
};

struct MessageRow {
  std::string_view guid = {};
  std::optional<std::string_view> text = {};            // UTF-8; absent: NULL
  std::optional<std::string_view> attributedBody = {};  // bytes of a typedstream; absent: NULL
  std::int64_t date = 0;    // nanoseconds since 2001-01-01T00:00:00Z; stored as seconds before iOS 11
  bool dateAsIs = false;    // store `date` unchanged, whatever the generation
  std::int64_t handle = 0;  // ROWID of the other person; 0 for none
  bool fromMe = false;
  std::string_view service = "iMessage";
  std::span<const std::int64_t> chats = {};        // ROWIDs; several for a message that stands in several chats
  std::span<const std::int64_t> attachments = {};  // ROWIDs, in the order of the joins
  std::string_view roomName = {};                  // the chat identifier of a group; empty: NULL
  int error = 0;                                   // not 0: sending failed
  int itemType = 0;                                // 0 an ordinary message, else a system row
  int groupActionType = 0;
  std::int64_t otherHandle = 0;
  std::string_view groupTitle = {};             // empty: NULL
  std::string_view associatedMessageGuid = {};  // the target of a reaction; empty: NULL
  int associatedMessageType = 0;
  std::string_view threadOriginatorGuid = {};  // empty: NULL
  std::string_view reactionEmoji = {};         // of a reaction of type 2006; empty: NULL
  std::string_view subject = {};               // empty: NULL
  std::string_view effect = {};                // how it was sent, an identifier; empty: NULL
  std::string_view balloonBundle = {};  // the app of a card, "com.apple.messages.URLBalloonProvider"; empty: NULL
  std::string_view payload = {};        // what the card shows, a keyed archive; empty: NULL
  std::string_view summaryInfo = {};    // what it was before, a property list; empty: NULL
  std::int64_t dateEdited = 0;          // nanoseconds since 2001
  std::int64_t dateRetracted = 0;
  int shareStatus = 0;
  int scheduleType = 0;
  int scheduleState = 0;
};

struct AttachmentRow {
  std::string_view guid;
  std::string_view filename = {};  // empty: NULL, an attachment that was never downloaded
  std::string_view transferName = {};
  std::string_view uti = {};
  std::string_view mimeType = {};
  std::int64_t totalBytes = 0;
  std::int64_t createdDate = 0;  // seconds since 2001-01-01T00:00:00Z
  bool outgoing = false;
  bool hidden = false;  // the payload of a link preview
  bool sticker = false;
};

class StoreWriter {
 public:
  /// Starts the store that is to stand at `path`.
  StoreWriter(const std::filesystem::path& path, Generation generation, Placement placement = Placement::mainFile);
  ~StoreWriter();

  // Each adds one row and answers its ROWID, 0 after a failure.
  std::int64_t addHandle(const HandleRow& row);
  std::int64_t addChat(const ChatRow& row);
  std::int64_t addAttachment(const AttachmentRow& row);
  std::int64_t addMessage(const MessageRow& row);

  /// Names the own address that the rows after this call carry as `account` ("E:name@example.com", "P:+15550100100")
  /// and `destination_caller_id`.
  void setOwnAddress(std::string_view address);

  /// Sets a key of the table of properties.
  void setProperty(std::string_view key, std::string_view value);

  [[nodiscard]] Generation generation() const { return generation_; }

  /// For rows that have no operation here; inside the transaction.
  [[nodiscard]] StoreFile& file() { return file_; }

  /// Builds the indexes and puts the store in its place. Nothing when all is well, else one sentence.
  [[nodiscard]] std::optional<std::string> finish();

 private:
  // An INSERT of those of the wanted columns that the generation has.
  class Insert {
   public:
    Insert() = default;
    Insert(sqlite3* connection, std::string_view table, std::span<const std::string_view> wanted,
           Generation generation);

    // `column` counts in the wanted columns; one that the generation lacks is passed over.
    void text(std::size_t column, std::string_view value);
    void optionalText(std::size_t column, std::string_view value);  // empty: NULL
    void blob(std::size_t column, std::string_view value);
    void integer(std::size_t column, std::int64_t value);
    [[nodiscard]] bool run();
    explicit operator bool() const { return static_cast<bool>(statement_); }

   private:
    sqlite::Statement statement_;
    std::array<int, 48> parameters_{};
  };

  std::int64_t run(Insert& insert);
  void join(Insert& insert, std::int64_t first, std::int64_t second);

  StoreFile file_;
  Generation generation_;
  Insert handles_, chats_, messages_, attachments_, chatHandles_, chatMessages_, messageAttachments_;
  std::string ownAddress_ = "E:me@example.com";
};

}  // namespace chatsum::device
