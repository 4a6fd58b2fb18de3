// Who is behind the handles of a device's Messages store, for lists of conversations and their members. Any thread.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/interfaces/AddressBook.h"
#include "platform/system/contacts/ContactBook.h"

namespace chatsum::device {

struct ResolvedHandle {
  platform::ABRecordID record = -1;     ///< the person's card, -1 for nobody or when it is not clear who
  std::string name;                     ///< the person's name, UTF-8; empty without a card
  std::string label;                    ///< the handle's label in words ("mobile"); empty when the card has none
  bool ambiguous = false;               ///< several different people have the handle
  std::vector<std::string> candidates;  ///< when ambiguous: their names
};

class DeviceContacts {
 public:
  /// Opens the book at the first question.
  explicit DeviceContacts(std::shared_ptr<const platform::system::ContactBook> book) : book_(std::move(book)) {}

  /// A handle as the store has it: phone number, e-mail address, short code or sender name.
  [[nodiscard]] ResolvedHandle resolve(std::string_view handle) const;

  /// The name on the device owner's own card; empty when no card is marked as that.
  [[nodiscard]] std::string ownName() const;

  /// What of the address book could not be read, one sentence; empty when all could.
  [[nodiscard]] std::string problem() const { return book_->store().problem(); }

 private:
  std::shared_ptr<const platform::system::ContactBook> book_;
};

}  // namespace chatsum::device
