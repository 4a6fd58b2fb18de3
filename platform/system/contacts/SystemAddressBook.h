// The address-book service over the address book of the source. Access is granted at once. Any thread.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/interfaces/AddressBook.h"
#include "platform/interfaces/Files.h"
#include "platform/system/contacts/ContactBook.h"
#include "platform/system/translations/Translations.h"

namespace chatsum::platform::system {

class SystemAddressBook final : public AddressBook {
 public:
  /// The translations, which must outlive it, are those of labels; null: English.
  explicit SystemAddressBook(std::shared_ptr<const ContactBook> book, const Translations* translations = nullptr)
      : book_(std::move(book)), translations_(translations) {}
  /// With a book of its own; `files` must outlive it and its address books.
  SystemAddressBook(Files& files, std::string region)
      : SystemAddressBook(std::make_shared<ContactBook>(files, std::move(region))) {}

  [[nodiscard]] ABAddressBookRef create() override;
  void requestAccess(const ABAddressBookRef& book, std::function<void(bool granted)> completion) override;
  [[nodiscard]] std::string localizedLabel(std::string_view label) const override;
  [[nodiscard]] std::string formattedPhoneNumber(std::string_view number) const override;

  /// The person a number or address belongs to, nullptr when nobody has it or it is not clear who.
  [[nodiscard]] ABRecordRef findPerson(std::string_view number) const;

 private:
  std::shared_ptr<const ContactBook> book_;
  const Translations* translations_ = nullptr;
};

}  // namespace chatsum::platform::system
