// The address-book service as the library needs it to find labels. It compares a handle with a card's numbers by their
// last ten characters and e-mail addresses letter by letter, so "555.010.0123" or "Ann@Example.com" on a card have no
// label. Here a person's values begin with the handles that are known to be theirs, each with its label. Any thread.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/interfaces/AddressBook.h"
#include "platform/system/contacts/ContactBook.h"
#include "platform/system/contacts/SystemAddressBook.h"

namespace chatsum::device {

class HandleOwners;

class HandleAddressBook final : public platform::AddressBook {
 public:
  /// `handles`: all of the Messages store.
  HandleAddressBook(std::shared_ptr<const platform::system::ContactBook> book, std::vector<std::string> handles);

  [[nodiscard]] platform::ABAddressBookRef create() override;
  void requestAccess(const platform::ABAddressBookRef& book, std::function<void(bool granted)> completion) override {
    system_.requestAccess(book, std::move(completion));
  }
  [[nodiscard]] std::string localizedLabel(std::string_view label) const override {
    return system_.localizedLabel(label);
  }
  [[nodiscard]] std::string formattedPhoneNumber(std::string_view number) const override {
    return system_.formattedPhoneNumber(number);
  }
  /// As `SystemAddressBook::findPerson`.
  [[nodiscard]] platform::ABRecordRef findPerson(std::string_view number) const { return system_.findPerson(number); }

 private:
  platform::system::SystemAddressBook system_;
  std::shared_ptr<const HandleOwners> owners_;
};

}  // namespace chatsum::device
