// The index from plain values to records: when it is built, and what is found in it.

#include "tests/support/OpenDescriptors.h"
#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kChange = "__ABDataBaseChangedByOtherProcessNotification";

class AddressBookIndexing : public ReadingTest {
 protected:
  static platform::ABRecordID lookUp(const std::string& handle) {
    return ChatsumUtils::addressBookRecordForPhoneNumber(handle, nullptr);
  }
  static bool isIndexEmpty() { return addressBookIndexSlot::current()->empty(); }
};

TEST_F(AddressBookIndexing, IsDoneInTheThreeHostApplications) {
  addressBook().value(7, "+15550100123");
  for (const char* host : {"com.apple.MobileSMS", "com.apple.mobilephone", "com.apple.facetime"}) {
    addressBookIndexSlot::publish(std::make_shared<AddressBookIndex>());
    fake.mainBundle.bundleIdentifier = host;
    ChatsumUtils::loadAddressBook();
    EXPECT_FALSE(isIndexEmpty()) << host;
  }
  EXPECT_EQ(opens(kAddressBookPath), 3);
}

TEST_F(AddressBookIndexing, IsNotDoneInOtherHosts) {
  addressBook().value(7, "+15550100123");
  for (const char* host : {"com.apple.Preferences", "com.apple.mobilesms", "com.apple.MobileSMS.notification", ""}) {
    fake.mainBundle.bundleIdentifier = host;
    ChatsumUtils::loadAddressBook();
    EXPECT_TRUE(isIndexEmpty()) << host;
    EXPECT_EQ(lookUp("+15550100123"), -1) << host;
  }
  EXPECT_EQ(opens(kAddressBookPath), 0);
}

TEST_F(AddressBookIndexing, LeavesTheIndexAloneInOtherHosts) {
  addressBook().value(7, "+15550100123");
  ChatsumUtils::loadAddressBook();
  fake.mainBundle.bundleIdentifier = "com.apple.Preferences";
  ChatsumUtils::loadAddressBook();
  EXPECT_FALSE(isIndexEmpty());
}

TEST_F(AddressBookIndexing, IsNotDoneBeforeSystem11) {
  addressBook().value(7, "+15550100123");
  fake.device.version = "10.3.4";
  ChatsumUtils::loadAddressBook();
  EXPECT_TRUE(isIndexEmpty());
  EXPECT_EQ(opens(kAddressBookPath), 0);
  fake.device.version = "11.0.1";
  ChatsumUtils::loadAddressBook();
  EXPECT_FALSE(isIndexEmpty());
}

TEST_F(AddressBookIndexing, IsDoneAtTheFirstLookUpOnly) {
  addressBook().value(7, "+15550100123");
  EXPECT_EQ(lookUp("+15550100123"), 7);
  EXPECT_EQ(lookUp("+15550100123"), 7);
  EXPECT_EQ(lookUp("+15550100199"), -1);
  EXPECT_EQ(opens(kAddressBookPath), 1);
  EXPECT_EQ(fake.contacts.created, 0);
}

TEST_F(AddressBookIndexing, IsTriedAgainWhileTheIndexIsEmpty) {
  addressBook();
  EXPECT_EQ(lookUp("+15550100123"), -1);
  addressBook().value(7, "+15550100123");
  EXPECT_EQ(lookUp("+15550100123"), 7);
  EXPECT_EQ(opens(kAddressBookPath), 2);
}

TEST_F(AddressBookIndexing, LeavesAnEmptyIndexWhenTheDatabaseCannotBeOpened) {
  addressBook().value(7, "+15550100123");
  ChatsumUtils::loadAddressBook();
  fake.files.fail(platform::fake::FileOperation::kOpenDatabase, 13);
  ChatsumUtils::loadAddressBook();
  EXPECT_TRUE(isIndexEmpty());
  EXPECT_EQ(lookUp("+15550100123"), -1);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(AddressBookIndexing, LeavesAnEmptyIndexWhenTheFolderIsMissing) {
  ChatsumUtils::loadAddressBook();
  EXPECT_TRUE(isIndexEmpty());
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(AddressBookIndexing, LogsWhenTheStatementIsRefused) {
  addressBook().value(7, "+15550100123");
  ChatsumUtils::loadAddressBook();
  addressBook().run("DROP TABLE ABMultiValue");
  ChatsumUtils::loadAddressBook();
  EXPECT_TRUE(isIndexEmpty());
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Error => +[ChatsumUtils loadAddressBook], [Line 294], Error while "
                          "preparing statement. Error: 'no such table: ABMULTIVALUE'"));
}

TEST_F(AddressBookIndexing, KeepsWhatADamagedDatabaseStillGivesAndEnds) {
  for (int i = 0; i < 400; ++i) addressBook().value(i + 1, std::to_string(5550100000 + i) + std::string(200, 'x'));
  const std::int64_t page = addressBook().number(
      "SELECT pageno FROM dbstat WHERE name='ABMultiValue' AND pagetype='leaf' ORDER BY path LIMIT 1 OFFSET 5");
  addressBook().destroyPages({page});

  ChatsumUtils::loadAddressBook();
  EXPECT_EQ(lookUp("5550100000"), 1);
  EXPECT_EQ(lookUp("5550100399"), -1);
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Error => +[ChatsumUtils loadAddressBook], [Line 303], Error while "
                          "reading rows. Error: 'database disk image is malformed'"));
}

TEST_F(AddressBookIndexing, FindsPlainFormsOfStoredNumbers) {
  addressBook().value(7,
                      "+1 (555)\xC2\xA0"
                      "010-9999");
  EXPECT_EQ(lookUp("+15550109999"), 7);
  EXPECT_EQ(lookUp("+1 (555) 010-9999"), 7);
  EXPECT_EQ(lookUp("5550109999"), 7);
  EXPECT_EQ(lookUp("0109999"), 7);
  EXPECT_EQ(lookUp("+445550109999"), -1);
}

TEST_F(AddressBookIndexing, SkipsMissingValues) {
  addressBook().value(6, std::nullopt);
  addressBook().value(7, "+15550100123");
  EXPECT_EQ(lookUp("+15550100123"), 7);
}

TEST_F(AddressBookIndexing, StoresAnEmptyValueUnderTheLocalizedUnknown) {
  addressBook().value(7, "");
  EXPECT_EQ(lookUp("unknown"), 7);
  EXPECT_EQ(lookUp(""), 7);
  fake.mainBundle.strings["Unknown"] = "?";
  EXPECT_EQ(lookUp(""), -1);
  EXPECT_EQ(fake.contacts.created, 1);  // one character: a matter of the contacts service
}

TEST_F(AddressBookIndexing, GivesTheRecordOfTheFirstKeyThatContainsTheNumber) {
  addressBook().value(3, "+15550100177");
  addressBook().value(7, "15550109999");
  addressBook().value(8, "5550109999");
  EXPECT_EQ(lookUp("5550109999"), 7);
  EXPECT_EQ(lookUp("15550109999"), 7);
}

TEST_F(AddressBookIndexing, KeepsTheLastRecordOfEqualPlainValues) {
  addressBook().value(7, "+1 555 010 9999");
  addressBook().value(8, "5550109999");
  addressBook().value(9, "+1 (555) 010-9999");
  EXPECT_EQ(lookUp("+15550109999"), 9);
  EXPECT_EQ(lookUp("5550109999"), 9);
}

TEST_F(AddressBookIndexing, IgnoresCaseAndDiacritics) {
  addressBook().value(7, "Zo\xC3\xAB@Example.com");
  addressBook().value(8, "jose@example.com");
  EXPECT_EQ(lookUp("zoe@example.com"), 7);
  EXPECT_EQ(lookUp("ZO\xC3\x8B@EXAMPLE.COM"), 7);
  EXPECT_EQ(lookUp("Zoe\xCC\x88@example.com"), 7);
  EXPECT_EQ(lookUp("Jos\xC3\xA9@example.com"), 8);
}

TEST_F(AddressBookIndexing, FindsNothingForMarksThatFoldAway) {
  addressBook().value(7, "+15550100123");
  EXPECT_EQ(lookUp("\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81\xCC\x81"), -1);
}

TEST_F(AddressBookIndexing, NeverMatchesAcrossTwoKeys) {
  addressBook().value(7, "555010");
  addressBook().value(8, "012377");
  EXPECT_EQ(lookUp("5550100123"), -1);
  EXPECT_EQ(lookUp(std::string("555010\0"
                               "012377",
                               13)),
            -1);
  EXPECT_EQ(lookUp("012377"), 8);
}

TEST_F(AddressBookIndexing, RemembersAnswersOfOneIndexOnly) {
  addressBook().value(7, "+15550100123");
  EXPECT_EQ(lookUp("+15550100123"), 7);
  EXPECT_EQ(lookUp("+15550100188"), -1);
  addressBook().run("UPDATE ABMultiValue SET record_id=8, value='+15550100188'");
  EXPECT_EQ(lookUp("+15550100188"), -1);
  ChatsumUtils::loadAddressBook();
  EXPECT_EQ(lookUp("+15550100188"), 8);
  EXPECT_EQ(lookUp("+15550100123"), -1);
}

TEST_F(AddressBookIndexing, LeavesOneConnectionOpenHoweverOftenItIsDone) {
  addressBook().close();
  EXPECT_EQ(lookUp("+15550100123"), -1);
  EXPECT_EQ(openDescriptors(addressBook().path()), 1U);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(lookUp("+15550100123"), -1);
  EXPECT_EQ(opens(kAddressBookPath), 21);
  EXPECT_EQ(openDescriptors(addressBook().path()), 1U);
}

TEST_F(AddressBookIndexing, BeginsToListenWhenTheLibraryIsLoaded) {
  ChatsumUtils::load();
  const auto observers = fake.darwinNotifications.observers();
  ASSERT_EQ(observers.size(), 1U);
  EXPECT_EQ(observers[0].name, kChange);
  EXPECT_EQ(observers[0].observer, nullptr);
  EXPECT_EQ(static_cast<int>(observers[0].suspension), 3);
  EXPECT_EQ(observers[0].callback, &ChatsumUtils::addressBookChanged);
}

TEST_F(AddressBookIndexing, IsDoneAnewOnTheGlobalQueueWhenTheAddressBookChanged) {
  ChatsumUtils::load();
  addressBook().value(7, "+15550100123");
  fake.darwinNotifications.post(kChange);
  EXPECT_EQ(fake.dispatch.globalWaiting(), 1U);
  EXPECT_EQ(fake.dispatch.mainWaiting(), 0U);
  EXPECT_TRUE(isIndexEmpty());
  EXPECT_EQ(fake.dispatch.runGlobal(), 1U);
  EXPECT_FALSE(isIndexEmpty());
  EXPECT_EQ(lookUp("+15550100123"), 7);
  EXPECT_EQ(opens(kAddressBookPath), 1);
}

TEST_F(AddressBookIndexing, IsNotDoneForOtherNotifications) {
  for (const char* name : {"", "__ABDataBaseChangedByOtherProcess", "__abdatabasechangedbyotherprocessnotification"}) {
    ChatsumUtils::addressBookChanged(nullptr, name);
  }
  EXPECT_EQ(fake.dispatch.globalWaiting(), 0U);
  ChatsumUtils::addressBookChanged(nullptr, kChange);
  EXPECT_EQ(fake.dispatch.globalWaiting(), 1U);
}

}  // namespace
}  // namespace chatsum::tests
