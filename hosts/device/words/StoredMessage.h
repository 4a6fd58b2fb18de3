// One message of a store as its columns have it, whatever the store's generation. Belongs to one connection and its
// thread; what it answers is valid until the next message is looked at.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "hosts/device/body/TypedStream.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {

class StoredMessage {
 public:
  enum Column : int {
    kText,
    kBody,
    kHandle,
    kFromMe,
    kItemType,
    kGroupAction,
    kOtherHandle,
    kGroupTitle,
    kShareStatus,
    kReactionType,
    kReactionEmoji,
    kThread,
    kEffect,
    kBundle,
    kPayload,
    kSummary,
    kEdited,
    kRetracted,
    kError,
    kSubject,
    kScheduleType,
    kScheduleState,
  };

  explicit StoredMessage(const sqlite::Connection& store);

  /// Goes to the message of that ROWID; false when there is none, and then all values are empty.
  bool goTo(std::int64_t row);

  // Of the message; 0 and empty for NULL and for columns that the store lacks.
  [[nodiscard]] std::int64_t integer(Column column) const { return isThere_ ? row_.integer(column) : 0; }
  [[nodiscard]] std::string_view text(Column column) const { return isThere_ ? row_.text(column) : ""; }
  [[nodiscard]] std::string_view blob(Column column) const { return isThere_ ? row_.blob(column) : ""; }

  struct Words {
    std::string text;  ///< valid UTF-8 with the marks of attachments and app cards
    bool isThere = false;
    bool isFromBody = false;
    BodyText body = {};  ///< what became of the body when it was looked at, without its text
  };
  /// What was written: the text, where it is missing or empty that of the body.
  [[nodiscard]] Words words() const;

 private:
  sqlite::Statement row_;
  bool isThere_ = false;
};

}  // namespace chatsum::device
