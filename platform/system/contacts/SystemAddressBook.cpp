#include "platform/system/contacts/SystemAddressBook.h"

#include "platform/system/contacts/ContactLabels.h"
#include "platform/system/phone/PhoneNumbers.h"

namespace chatsum::platform::system {
namespace {

class Book final : public ABAddressBook {
 public:
  explicit Book(std::shared_ptr<const ContactBook> book) : book_(std::move(book)) {}

  [[nodiscard]] ABRecordRef personWithRecordID(ABRecordID identifier) const override {
    return recordInBook(book_, identifier);
  }

 private:
  std::shared_ptr<const ContactBook> book_;
};

}  // namespace

ABAddressBookRef SystemAddressBook::create() { return std::make_shared<Book>(book_); }

void SystemAddressBook::requestAccess(const ABAddressBookRef&, std::function<void(bool granted)> completion) {
  if (completion) completion(true);
}

std::string SystemAddressBook::localizedLabel(std::string_view label) const {
  return contactLabelInWords(label, translations_);
}

std::string SystemAddressBook::formattedPhoneNumber(std::string_view number) const {
  return formattedLikeAPhone(number, book_->region());
}

ABRecordRef SystemAddressBook::findPerson(std::string_view number) const {
  return recordInBook(book_, book_->matcher().match(number).record);
}

}  // namespace chatsum::platform::system
