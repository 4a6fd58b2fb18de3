#include "platform/system/contacts/SystemContacts.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/fake/TemporaryFolder.h"
#include "platform/system/contacts/SystemAddressBook.h"
#include "platform/system/files/SystemFiles.h"
#include "tests/unit/contacts/BookFixture.h"

namespace chatsum::platform::system {
namespace {

using tests::BookFixture;

/// A device folder, with an address book once `fill` was called.
class SystemContactsTest : public ::testing::Test {
 protected:
  BookFixture makeStore() {
    const std::string path = folder_.path() + kAddressBookPath;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    return BookFixture(path);
  }

  fake::TemporaryFolder folder_;
  SystemFiles files_{
      FilesOptions{"/var/mobile", [this](const std::string& path) { return folder_.path() + path; }, {}}};
};

TEST_F(SystemContactsTest, GrantsAccessAtOnce) {
  SystemContacts contacts(files_, "US");
  SystemAddressBook addressBook(files_, "US");
  int granted = 0;
  contacts.requestAccess(contacts.create(), 0, [&](bool isGranted) { granted += isGranted; });
  addressBook.requestAccess(addressBook.create(), [&](bool isGranted) { granted += isGranted; });
  EXPECT_EQ(granted, 2);
}

TEST_F(SystemContactsTest, HasNobodyWithoutAStoreAndMakesNone) {
  SystemContacts contacts(files_, "US");
  SystemAddressBook addressBook(files_, "US");
  const auto store = contacts.create();
  ASSERT_TRUE(store);
  const auto answer = store->contactsForPhoneNumber("22222");
  ASSERT_TRUE(answer);
  EXPECT_FALSE(answer->error);
  EXPECT_TRUE(answer->contacts.empty());
  EXPECT_EQ(store->contactIdentifierFromPersonID(1), std::nullopt);
  EXPECT_EQ(store->publicABPersonFromContact({"CARD-1", {}}), nullptr);
  ASSERT_TRUE(addressBook.create());
  EXPECT_EQ(addressBook.create()->personWithRecordID(1), nullptr);
  EXPECT_EQ(addressBook.findPerson("22222"), nullptr);
  EXPECT_FALSE(files_.exists(kAddressBookPath));
}

TEST_F(SystemContactsTest, FindsTheContactOfANumberWithAllItsNumbers) {
  {
    BookFixture fixture = makeStore();
    const int shop = fixture.person("Example", "Shop");
    fixture.phone(shop, "+1 (555) 010-0123", "_$!<Work>!$_");
    fixture.phone(shop, "22222", "");
    fixture.email(shop, "shop@example.com");
  }
  SystemContacts contacts(files_, "US");
  const auto store = contacts.create();
  const auto answer = store->contactsForPhoneNumber("22222");
  ASSERT_TRUE(answer);
  ASSERT_EQ(answer->contacts.size(), 1u);
  const CNContact& contact = answer->contacts.front();
  EXPECT_EQ(contact.identifier, "CARD-1");
  ASSERT_EQ(contact.phoneNumbers.size(), 2u);
  EXPECT_EQ(contact.phoneNumbers[0].value, "+1 (555) 010-0123");
  EXPECT_EQ(contact.phoneNumbers[0].label, "_$!<Work>!$_");
  EXPECT_EQ(contact.phoneNumbers[1].label, std::nullopt);
  ASSERT_TRUE(store->publicABPersonFromContact(contact));
  EXPECT_EQ(store->publicABPersonFromContact(contact)->recordID(), 1);
  EXPECT_EQ(store->contactIdentifierFromPersonID(1), "CARD-1");
}

TEST_F(SystemContactsTest, GivesNoContactForANumberOfSeveralPeople) {
  {
    BookFixture fixture = makeStore();
    fixture.phone(fixture.person("Ann", "Example"), "22222");
    fixture.phone(fixture.person("Bob", "Example"), "22222");
  }
  EXPECT_TRUE(SystemContacts(files_, "US").create()->contactsForPhoneNumber("22222")->contacts.empty());
}

TEST_F(SystemContactsTest, MakesUpAnIdentifierForACardWithoutOne) {
  {
    BookFixture fixture = makeStore();
    fixture.phone(fixture.person("Ann", "Example"), "22222");
    fixture.run("UPDATE ABPerson SET guid = NULL");
    fixture.person("Bob", "Example");
  }
  SystemContacts contacts(files_, "US");
  const auto store = contacts.create();
  const auto identifier = store->contactIdentifierFromPersonID(1);
  ASSERT_TRUE(identifier);
  EXPECT_FALSE(identifier->empty());
  EXPECT_EQ(contacts.create()->contactIdentifierFromPersonID(1), identifier);
  ASSERT_TRUE(store->publicABPersonFromContact({*identifier, {}}));
  EXPECT_EQ(store->publicABPersonFromContact({*identifier, {}})->recordID(), 1);
  for (const char* other : {"", "card-", "card-x", "card-1x", "card-99", "card-2", "nobody"}) {
    EXPECT_EQ(store->publicABPersonFromContact({other, {}}), nullptr) << other;
  }
}

TEST_F(SystemContactsTest, AnswersAPersonsValuesByProperty) {
  {
    BookFixture fixture = makeStore();
    const int ann = fixture.person("Ann", "Example");
    fixture.phone(ann, "5550100123");
    fixture.phone(ann, "5550100124", "Boat");
  }
  SystemAddressBook addressBook(files_, "US");
  const ABRecordRef ann = addressBook.create()->personWithRecordID(1);
  ASSERT_TRUE(ann);
  const auto phones = ann->values(ABProperty::kPhone);
  ASSERT_TRUE(phones);
  ASSERT_EQ(phones->size(), 2u);
  EXPECT_EQ((*phones)[0].label, "_$!<Mobile>!$_");
  EXPECT_EQ((*phones)[1].value, "5550100124");
  EXPECT_EQ(ann->values(ABProperty::kEmail), std::nullopt);
  EXPECT_EQ(addressBook.create()->personWithRecordID(2), nullptr);
  EXPECT_EQ(addressBook.create()->personWithRecordID(-1), nullptr);
}

TEST_F(SystemContactsTest, FindsAPersonForOlderSystems) {
  {
    BookFixture fixture = makeStore();
    fixture.phone(fixture.person("Ann", "Example"), "06 12 34 56 78");
  }
  const SystemAddressBook addressBook(files_, "FR");
  ASSERT_TRUE(addressBook.findPerson("+33612345678"));
  EXPECT_EQ(addressBook.findPerson("+33612345678")->recordID(), 1);
  EXPECT_EQ(addressBook.findPerson("+33612345679"), nullptr);
}

TEST_F(SystemContactsTest, PutsLabelsAndNumbersIntoWords) {
  const SystemAddressBook addressBook(files_, "FR");
  EXPECT_EQ(addressBook.localizedLabel("_$!<WorkFAX>!$_"), "work fax");
  EXPECT_EQ(addressBook.localizedLabel("unknown"), "unknown");
  EXPECT_EQ(addressBook.formattedPhoneNumber("0612345678"), "06 12 34 56 78");
  EXPECT_EQ(addressBook.formattedPhoneNumber("+15550100123"), "+1 (555) 010-0123");
}

}  // namespace
}  // namespace chatsum::platform::system
