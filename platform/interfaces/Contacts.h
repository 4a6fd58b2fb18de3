// The contacts service of newer systems.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/interfaces/AddressBook.h"

namespace chatsum::platform {

/// One contact, as far as look-ups need it. Immutable, any thread.
struct CNContact {
  std::string identifier;
  std::vector<ABLabelledValue> phoneNumbers;  ///< in the contact's order
};

/// What a search by number gave: an error, or the contacts found (maybe none).
struct CNContactsResult {
  std::optional<Error> error;
  std::vector<CNContact> contacts;
};

/// An opened contacts store. Any thread.
class CNContactStore {
 public:
  virtual ~CNContactStore() = default;
  /// The contacts a number belongs to, by its reputation for the system; none when the service does not answer.
  [[nodiscard]] virtual std::optional<CNContactsResult> contactsForPhoneNumber(std::string_view number) const = 0;
  /// The address-book person of a contact, nullptr when there is none.
  [[nodiscard]] virtual ABRecordRef publicABPersonFromContact(const CNContact& contact) const = 0;
  /// The contact identifier of an address-book person; none when there is none.
  [[nodiscard]] virtual std::optional<std::string> contactIdentifierFromPersonID(ABRecordID person) const = 0;
};
using CNContactStoreRef = std::shared_ptr<CNContactStore>;

class Contacts {
 public:
  virtual ~Contacts() = default;
  /// A new store, never null.
  [[nodiscard]] virtual CNContactStoreRef create() = 0;
  /// Asks the user for access to an entity type (0 is contacts). The completion runs exactly once, on any thread, maybe
  /// before this returns.
  virtual void requestAccess(const CNContactStoreRef& store, int entityType,
                             std::function<void(bool granted)> completion) = 0;
};

}  // namespace chatsum::platform
