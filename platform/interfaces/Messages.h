// What the system's Messages frameworks tell: the device owner, the kinds of pictures, conversations and their people.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/interfaces/AddressBook.h"

namespace chatsum::platform {

/// A person as an address (handle) knows it.
struct IMPerson {
  ABRecordID recordID = -1;
};

/// An address of a conversation's member. What a system's handles do not answer at all is outer none.
struct IMHandle {
  std::optional<std::optional<IMPerson>> person;                  ///< responds to person; the person may be nil
  std::optional<std::optional<std::string>> cnContactIdentifier;  ///< responds to cnContact; its identifier
};

/// A member of a conversation. Immutable, any thread.
class CKEntity {
 public:
  virtual ~CKEntity() = default;
  /// The name to show (UTF-8).
  [[nodiscard]] virtual std::string name() const = 0;
  [[nodiscard]] virtual IMHandle handle() const = 0;
  /// Outer none when the entity does not respond to abRecord; inner nullptr when it has none.
  [[nodiscard]] virtual std::optional<ABRecordRef> abRecord() const = 0;
};
using CKEntityRef = std::shared_ptr<const CKEntity>;

/// A conversation of the host's. Immutable, any thread.
class CKConversation {
 public:
  virtual ~CKConversation() = default;
  /// The GUIDs of every chat the conversation merges.
  [[nodiscard]] virtual std::vector<std::string> chatGuids() const = 0;
  [[nodiscard]] virtual std::vector<CKEntityRef> recipients() const = 0;
};

class Messages {
 public:
  virtual ~Messages() = default;
  /// The device owner's full name; none when the system does not know it.
  [[nodiscard]] virtual std::optional<std::string> ownerFullName() const = 0;
  /// The type identifiers of picture attachments, in the system's order. Any thread, several at once.
  [[nodiscard]] virtual const std::vector<std::string>& imageMediaTypes() const = 0;
};

}  // namespace chatsum::platform
