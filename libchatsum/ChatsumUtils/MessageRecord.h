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
 public:
  /// Both arguments must outlive the assembler; the address book may be nullptr.
  MessageRecordAssembler(const platform::CKConversation& conversation, const platform::ABAddressBookRef& addressBook);

  /// The record of a row; none when the row has no text.
  [[nodiscard]] std::optional<Record> record(const MessageRow& row);

  /// Whether any row so far had attachments.
  [[nodiscard]] bool hasAttachments() const { return hasAttachments_; }
  /// Whether any attachment so far was neither a picture nor a PDF.
  [[nodiscard]] bool hasMultiMediaAttachments() const { return hasMultiMediaAttachments_; }

 private:
  /// What the read knows of one handle. The entry is a record identifier (a number), or the contact identifier (a
  /// string) that replaced it once it was fetched.
  struct Handle {
    Value entry;
    std::unordered_map<platform::ABRecordID, Value> labels;
    // The last answer and the state it was made from: in the same state it is the answer again.
    bool isAnswered = false;
    Value entryBefore, entryAfter;
    std::uint64_t generation = 0;
    Value name, label;
  };
  struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  const Value& ownName();
  Handle& handleFor(std::string_view text);
  void resolve(const std::string& text, Handle& handle);
  /// The member of the conversation behind a record, by the ways that systems offer; nullptr when nobody matches.
  platform::CKEntityRef matchingRecipient(platform::ABRecordID record, Handle& handle, Value captured);
  Value labelFor(platform::ABRecordID record, const std::string& text, Handle& handle);
  Value attachmentPath(std::string_view fileName);
  const Ref<Shape>& shapeFor(bool guid, bool name, bool label, bool attachment);

  const platform::CKConversation& conversation_;
  const platform::ABAddressBookRef& addressBook_;
  std::optional<std::vector<platform::CKEntityRef>> recipients_;
  std::optional<Value> ownName_;
  std::unordered_map<std::string, Handle, StringHash, std::equal_to<>> handles_;
  std::unordered_map<std::string, Handle, StringHash, std::equal_to<>>::value_type* lastHandle_ = nullptr;
  std::array<Ref<Shape>, 16> shapes_;
  bool hasAttachments_ = false;
  bool hasMultiMediaAttachments_ = false;
};

/// The stored date as seconds since 1970-01-01T00:00:00Z: nanosecond counts since 2001 by their first nine digits,
/// numbers up to 1,000,000,000 as they are.
[[nodiscard]] std::int64_t secondsFromStoredDate(std::int64_t stored);

}  // namespace chatsum
