// An address book and a contacts store filled by a test. A test fills them while no other thread reads.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/fake/FakeAccess.h"
#include "platform/interfaces/Contacts.h"

namespace chatsum::platform::fake {

/// A card with public parts.
class FakeRecord final : public ABRecord {
 public:
  ABRecordID identifier = -1;
  std::optional<std::vector<ABLabelledValue>> phones;
  std::optional<std::vector<ABLabelledValue>> emails;

  FakeRecord() = default;
  FakeRecord(ABRecordID id, std::optional<std::vector<ABLabelledValue>> phoneValues,
             std::optional<std::vector<ABLabelledValue>> emailValues = std::nullopt)
      : identifier(id), phones(std::move(phoneValues)), emails(std::move(emailValues)) {}

  [[nodiscard]] ABRecordID recordID() const override { return identifier; }
  [[nodiscard]] std::optional<std::vector<ABLabelledValue>> values(ABProperty property) const override {
    return property == ABProperty::kPhone ? phones : emails;
  }
};

class FakeAddressBook final : public AddressBook {
 public:
  std::map<ABRecordID, ABRecordRef> persons;
  std::map<std::string, std::string, std::less<>> labels;   ///< label → the user's words; others stay as they are
  std::map<std::string, std::string, std::less<>> numbers;  ///< number → as the system prints it; others unchanged
  bool exists = true;                                       ///< false: there is no address book to make
  FakeAccess access;
  int created = 0;

  /// Adds a person; answers it.
  ABRecordRef add(ABRecordID identifier, std::vector<ABLabelledValue> phones,
                  std::optional<std::vector<ABLabelledValue>> emails = std::nullopt);

  [[nodiscard]] ABAddressBookRef create() override;
  void requestAccess(const ABAddressBookRef& book, std::function<void(bool granted)> completion) override;
  [[nodiscard]] std::string localizedLabel(std::string_view label) const override;
  [[nodiscard]] std::string formattedPhoneNumber(std::string_view number) const override;
};

class FakeContacts final : public Contacts {
 public:
  /// What a search by number gives; a number that is not here is not answered at all.
  std::map<std::string, CNContactsResult, std::less<>> answers;
  std::map<std::string, ABRecordRef, std::less<>> persons;  ///< contact identifier → address-book person
  std::map<ABRecordID, std::string> identifiers;            ///< address-book person → contact identifier
  FakeAccess access;
  std::vector<int> entityTypes;  ///< of every request for access
  int created = 0;

  [[nodiscard]] CNContactStoreRef create() override;
  void requestAccess(const CNContactStoreRef& store, int entityType,
                     std::function<void(bool granted)> completion) override;
};

}  // namespace chatsum::platform::fake
