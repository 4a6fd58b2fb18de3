// Short codes, which the contacts service is asked about.

#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using platform::CNContact;
using platform::fake::FakeRecord;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ContactsService : public ReadingTest {
 protected:
  static platform::ABRecordID lookUp(const std::string& handle) {
    return ChatsumUtils::addressBookRecordForPhoneNumber(handle, nullptr);
  }
  void answer(const std::string& number, std::vector<CNContact> contacts) {
    fake.contacts.answers[number] = {.error = std::nullopt, .contacts = std::move(contacts)};
  }
};

TEST_F(ContactsService, IsAskedForPlainFormsOfFiveCharactersButNotOfSix) {
  addressBook().value(3, "+15550100177");
  EXPECT_EQ(lookUp("55512"), -1);
  EXPECT_EQ(fake.contacts.created, 1);
  EXPECT_EQ(opens(kAddressBookPath), 0);
  EXPECT_EQ(lookUp("555123"), -1);
  EXPECT_EQ(fake.contacts.created, 1);
  EXPECT_EQ(opens(kAddressBookPath), 1);
}

TEST_F(ContactsService, IsAskedForTheHandleAsItIs) {
  addressBook();
  answer("(55) 5-12", {{"ID", {}}});
  fake.contacts.persons["ID"] = std::make_shared<FakeRecord>(9, std::nullopt);
  EXPECT_EQ(lookUp("(55) 5-12"), 9);
  EXPECT_EQ(lookUp("55512"), -1);
}

TEST_F(ContactsService, IsAskedByTheLengthInUnitsOfUtf16) {
  addressBook().value(3, "\xF0\x9F\x98\x80\xF0\x9F\x98\x80\xF0\x9F\x98\x80");
  // Three faces are six units, two and a digit five; five letters of two bytes each are five.
  EXPECT_EQ(lookUp("\xF0\x9F\x98\x80\xF0\x9F\x98\x80\xF0\x9F\x98\x80"), 3);
  EXPECT_EQ(fake.contacts.created, 0);
  lookUp(
      "\xF0\x9F\x98\x80\xF0\x9F\x98\x80"
      "1");
  EXPECT_EQ(fake.contacts.created, 1);
  lookUp("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9");
  EXPECT_EQ(fake.contacts.created, 2);
}

TEST_F(ContactsService, IsAskedAboutShortAddressesToo) {
  lookUp("a@b.c");
  EXPECT_EQ(fake.contacts.created, 1);
}

TEST_F(ContactsService, MayNotAnswer) {
  EXPECT_EQ(lookUp("55512"), -1);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
  EXPECT_THAT(fake.contacts.entityTypes, ElementsAre(0));
}

TEST_F(ContactsService, MayAnswerAnError) {
  platform::CNContact ignored{"ID", {{"mobile", "55512"}}};
  Error error;
  error.userInfo = Record{{kLocalizedDescriptionKey, "Access denied"}};
  fake.contacts.answers["55512"] = {.error = error, .contacts = {ignored}};
  fake.contacts.persons["ID"] = std::make_shared<FakeRecord>(9, std::nullopt);
  EXPECT_EQ(lookUp("55512"), -1);
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Error => +[ChatsumUtils "
                          "addressBookRecordForPhoneNumber:addressBook:]_block_invoke, [Line 392], Error while getting "
                          "contacts for phone number 55512. Error : Access denied."));
}

TEST_F(ContactsService, MayKnowNobody) {
  answer("55512", {});
  EXPECT_EQ(lookUp("55512"), -1);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(ContactsService, GivesTheRecordOfTheFirstNumberThatIsInTheAddressBook) {
  addressBook().value(0, "55510");
  addressBook().value(-3, "55511");
  addressBook().value(7, "55512");
  addressBook().value(8, "55513");
  answer("55512", {{"ID", {{"a", "55509"}, {"b", "55510"}, {"c", "55511"}, {std::nullopt, "55512"}, {"e", "55513"}}}});
  fake.contacts.persons["ID"] = std::make_shared<FakeRecord>(9, std::nullopt);
  EXPECT_EQ(lookUp("55512"), 7);
  // The fifth number was not looked up any more.
  EXPECT_EQ(opens(kAddressBookPath), 4);
}

TEST_F(ContactsService, TakesTheFirstContactOnly) {
  addressBook().value(8, "55513");
  answer("55512", {{"FIRST", {{"a", "55512"}}}, {"SECOND", {{"a", "55513"}}}});
  fake.contacts.persons["SECOND"] = std::make_shared<FakeRecord>(9, std::nullopt);
  EXPECT_EQ(lookUp("55512"), -1);
}

TEST_F(ContactsService, AsksForTheContactsPersonWhenNoNumberIsInTheAddressBook) {
  addressBook();
  answer("55512", {{"ID", {{"a", "55512"}}}});
  fake.contacts.persons["ID"] = std::make_shared<FakeRecord>(9, std::nullopt);
  EXPECT_EQ(lookUp("55512"), 9);
  EXPECT_EQ(fake.contacts.created, 1);
}

TEST_F(ContactsService, AsksForTheContactsPersonWhenTheAddressBookCannotBeOpened) {
  answer("55512", {{"ID", {{"a", "55512"}}}});
  fake.contacts.persons["ID"] = std::make_shared<FakeRecord>(9, std::nullopt);
  EXPECT_EQ(lookUp("55512"), 9);
  EXPECT_EQ(errorLines().size(), 1U);
}

}  // namespace
}  // namespace chatsum::tests
