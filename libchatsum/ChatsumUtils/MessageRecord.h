// Turns rows of the Messages store into report records, one reader's rows after another on the reader's thread.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "libchatsum/ChatsumUtils/MessageRow.h"
#include "platform/foundation/Value.h"
#include "platform/interfaces/AddressBook.h"
#include "platform/interfaces/Messages.h"

namespace chatsum {

/// Assembles the records of one read and remembers, for that read, who is behind each handle.
class MessageRecordAssembler {
 private:
  /// What the read knows of one handle. The entry is a record identifier (a number), or the contact identifier (a
  /// string) that replaced it once it was fetched.
  struct Handle {
    Value entry;
    std::unordered_map<platform::ABRecordID, Value> labels;
    Value name;  // as the last record has it: records of one sender share the text
  };
  struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  using Handles = std::unordered_map<std::string, Handle, StringHash, std::equal_to<>>;

 public:
  /// A row that became independent of its batch and waits for its turn. Lives as long as the assembler at most.
  class KeptRow {
   public:
    /// As the store has it; none is NULL.
    [[nodiscard]] std::optional<std::int64_t> date() const { return date_; }

   private:
    friend class MessageRecordAssembler;
    Value guid_, text_, fileName_;  // the text is missing where a file name takes its place
    std::optional<std::int64_t> date_;
    Handles::value_type* handle_ = nullptr;  // of a received message
    int isFromMe_ = 0, hasAttachments_ = 0;
  };

  /// Both arguments must outlive the assembler; the address book may be nullptr.
  MessageRecordAssembler(const platform::CKConversation& conversation, const platform::ABAddressBookRef& addressBook);

  /// Takes a row out of its batch; none when the row has no text.
  [[nodiscard]] std::optional<KeptRow> keep(const MessageRow& row);
  /// The record of a kept row. Rows come in the order of the records: what was found for one decides about the next.
  [[nodiscard]] Record record(KeptRow row);

  /// Whether any row so far had attachments.
  [[nodiscard]] bool hasAttachments() const { return hasAttachments_; }
  /// Whether any attachment so far was neither a picture nor a PDF.
  [[nodiscard]] bool hasMultiMediaAttachments() const { return hasMultiMediaAttachments_; }

 private:
  const Value& ownName();
  Handles::value_type* handleFor(std::string_view text);
  /// The label of a message's sender, none when nobody is found; the handle's name is then the sender's.
  Value nameSender(Handles::value_type& sender);
  /// The member of the conversation behind a record, by the ways that systems offer; nullptr when nobody matches.
  platform::CKEntityRef matchingRecipient(platform::ABRecordID record, Handle& handle, Value captured);
  Value labelFor(platform::ABRecordID record, const std::string& text, Handle& handle);
  Value attachmentPath(std::string path);
  const Ref<Shape>& shapeFor(bool guid, bool name, bool label, bool attachment);

  const platform::CKConversation& conversation_;
  const platform::ABAddressBookRef& addressBook_;
  std::optional<std::vector<platform::CKEntityRef>> recipients_;
  std::optional<Value> ownName_;
  Handles handles_;
  Handles::value_type* lastHandle_ = nullptr;
  std::array<Ref<Shape>, 16> shapes_;
  bool hasAttachments_ = false;
  bool hasMultiMediaAttachments_ = false;
};

/// The stored date as seconds since 1970-01-01T00:00:00Z: nanosecond counts since 2001 by their first nine digits,
/// numbers up to 1,000,000,000 as they are.
[[nodiscard]] std::int64_t secondsFromStoredDate(std::int64_t stored);

}  // namespace chatsum
