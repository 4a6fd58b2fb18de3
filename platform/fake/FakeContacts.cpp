#include "platform/fake/FakeContacts.h"

namespace chatsum::platform::fake {
namespace {

class Book final : public ABAddressBook {
 public:
  explicit Book(std::map<ABRecordID, ABRecordRef> persons) : persons_(std::move(persons)) {}
  [[nodiscard]] ABRecordRef personWithRecordID(ABRecordID identifier) const override {
    const auto found = persons_.find(identifier);
    return found == persons_.end() ? nullptr : found->second;
  }

 private:
  std::map<ABRecordID, ABRecordRef> persons_;
};

class Store final : public CNContactStore {
 public:
  explicit Store(const FakeContacts& contacts)
      : answers_(contacts.answers), persons_(contacts.persons), identifiers_(contacts.identifiers) {}

  [[nodiscard]] std::optional<CNContactsResult> contactsForPhoneNumber(std::string_view number) const override {
    const auto found = answers_.find(number);
    return found == answers_.end() ? std::nullopt : std::optional(found->second);
  }
  [[nodiscard]] ABRecordRef publicABPersonFromContact(const CNContact& contact) const override {
    const auto found = persons_.find(contact.identifier);
    return found == persons_.end() ? nullptr : found->second;
  }
  [[nodiscard]] std::optional<std::string> contactIdentifierFromPersonID(ABRecordID person) const override {
    const auto found = identifiers_.find(person);
    return found == identifiers_.end() ? std::nullopt : std::optional(found->second);
  }

 private:
  std::map<std::string, CNContactsResult, std::less<>> answers_;
  std::map<std::string, ABRecordRef, std::less<>> persons_;
  std::map<ABRecordID, std::string> identifiers_;
};

std::string translated(const std::map<std::string, std::string, std::less<>>& words, std::string_view word) {
  const auto found = words.find(word);
  return found == words.end() ? std::string(word) : found->second;
}

}  // namespace

ABRecordRef FakeAddressBook::add(ABRecordID identifier, std::vector<ABLabelledValue> phones,
                                 std::optional<std::vector<ABLabelledValue>> emails) {
  auto person = std::make_shared<FakeRecord>(identifier, std::move(phones), std::move(emails));
  persons[identifier] = person;
  return person;
}

ABAddressBookRef FakeAddressBook::create() {
  ++created;
  return exists ? std::make_shared<Book>(persons) : nullptr;
}

void FakeAddressBook::requestAccess(const ABAddressBookRef& /*book*/, std::function<void(bool granted)> completion) {
  access.request(std::move(completion));
}

std::string FakeAddressBook::localizedLabel(std::string_view label) const { return translated(labels, label); }
std::string FakeAddressBook::formattedPhoneNumber(std::string_view number) const { return translated(numbers, number); }

CNContactStoreRef FakeContacts::create() {
  ++created;
  return std::make_shared<Store>(*this);
}

void FakeContacts::requestAccess(const CNContactStoreRef& /*store*/, int entityType,
                                 std::function<void(bool granted)> completion) {
  entityTypes.push_back(entityType);
  access.request(std::move(completion));
}

}  // namespace chatsum::platform::fake
