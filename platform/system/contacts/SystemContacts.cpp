#include "platform/system/contacts/SystemContacts.h"

namespace chatsum::platform::system {
namespace {

class Store final : public CNContactStore {
 public:
  explicit Store(std::shared_ptr<const ContactBook> book) : book_(std::move(book)) {}

  /// At most one: the person whom the number belongs to. A number of several people belongs to none of them.
  [[nodiscard]] std::optional<CNContactsResult> contactsForPhoneNumber(std::string_view number) const override {
    CNContactsResult result;
    const ABRecordID record = book_->matcher().match(number).record;
    if (const auto identifier = book_->identifierOf(record)) {
      CNContact contact;
      contact.identifier = *identifier;
      if (const ABRecordRef card = recordInBook(book_, record)) {
        contact.phoneNumbers = card->values(ABProperty::kPhone).value_or(std::vector<ABLabelledValue>());
      }
      result.contacts.push_back(std::move(contact));
    }
    return result;
  }

  [[nodiscard]] ABRecordRef publicABPersonFromContact(const CNContact& contact) const override {
    return recordInBook(book_, book_->recordOf(contact.identifier));
  }

  [[nodiscard]] std::optional<std::string> contactIdentifierFromPersonID(ABRecordID person) const override {
    return book_->identifierOf(person);
  }

 private:
  std::shared_ptr<const ContactBook> book_;
};

}  // namespace

CNContactStoreRef SystemContacts::create() { return std::make_shared<Store>(book_); }

void SystemContacts::requestAccess(const CNContactStoreRef&, int, std::function<void(bool granted)> completion) {
  if (completion) completion(true);
}

}  // namespace chatsum::platform::system
