#include "platform/system/contacts/ContactStore.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/unit/contacts/BookFixture.h"

namespace chatsum::platform::system {
namespace {

using tests::BookFixture;

TEST(ContactStore, ReadsNumbersAndAddressesInTheirOrderWithTheirLabels) {
  BookFixture fixture;
  const int ann = fixture.person("Ann", "Example");
  const int bob = fixture.person("Bob", "Example");
  fixture.phone(bob, "+15550100124", "");
  fixture.phone(ann, "+15550100123");
  fixture.email(ann, "ann@example.com", "Secret");
  fixture.run(
      "INSERT INTO ABMultiValue (record_id, property, label, value) VALUES (1, 5, 1, 'Example Street 1'),"
      "(1, 3, 99, '22222'), (1, 3, NULL, NULL), (NULL, 3, NULL, '33333'), (-1, 3, NULL, '44444')");
  const auto book = fixture.book();
  const ContactStore& store = book->store();
  ASSERT_EQ(store.values().size(), 4u);
  EXPECT_EQ(store.values()[0].text, "+15550100124");
  EXPECT_EQ(store.label(store.values()[0].label), std::nullopt);

  const auto ofAnn = store.valuesOf(ann);
  ASSERT_EQ(ofAnn.size(), 3u);
  EXPECT_EQ(store.values()[ofAnn[0]].text, "+15550100123");
  EXPECT_EQ(store.label(store.values()[ofAnn[0]].label), "_$!<Mobile>!$_");
  EXPECT_EQ(store.values()[ofAnn[1]].property, ABProperty::kEmail);
  EXPECT_EQ(store.label(store.values()[ofAnn[1]].label), "Secret");
  EXPECT_EQ(store.values()[ofAnn[2]].text, "22222");
  EXPECT_EQ(store.label(store.values()[ofAnn[2]].label), std::nullopt) << "a label that is not in the store";
  EXPECT_TRUE(store.valuesOf(99).empty());
  EXPECT_TRUE(store.valuesOf(-1).empty());
  EXPECT_EQ(store.problem(), "");
}

TEST(ContactStore, NamesACardWithoutWordsByItsAddress) {
  BookFixture fixture;
  const int number = fixture.person(BookFixture::Columns{});
  fixture.phone(number, "+1 (555) 010-0123");
  const int address = fixture.person(BookFixture::Columns{});
  fixture.phone(address, "+15550100124");
  fixture.email(address, "ann@example.com");
  const int nothing = fixture.person(BookFixture::Columns{});
  const auto book = fixture.book();
  EXPECT_EQ(book->store().personName(number), "+1 (555) 010-0123");
  EXPECT_EQ(book->store().personName(address), "ann@example.com");
  EXPECT_EQ(book->store().personName(nothing), "");
  EXPECT_EQ(book->store().personName(99), "");
}

TEST(ContactStore, NamesCompaniesAndNicknames) {
  BookFixture fixture;
  const int company = fixture.person({{"Organization", "Example Ltd"}, {"Kind", "1"}, {"First", "Ann"}});
  const int nickname = fixture.person({{"Nickname", "Bobby"}});
  const auto book = fixture.book();
  EXPECT_EQ(book->store().personName(company), "Example Ltd");
  EXPECT_EQ(book->store().personName(nickname), "Bobby");
}

TEST(ContactStore, TakesTheNameOfLinkedCardsFromThePreferredOne) {
  BookFixture fixture;
  const int a = fixture.person({{"First", "A."}, {"PersonLink", "1"}, {"IsPreferredName", "0"}});
  const int b = fixture.person({{"First", "Ann"}, {"PersonLink", "1"}, {"IsPreferredName", "1"}});
  const int c = fixture.person({{"First", "C."}, {"PersonLink", "2"}});
  const int d = fixture.person({{"First", "Cleo"}, {"PersonLink", "2"}});
  const int e = fixture.person({{"First", "E."}, {"PersonLink", "3"}});
  const int f = fixture.person({{"First", "Eve"}, {"PersonLink", "3"}});
  // The second link names its card, the third one's card is gone.
  fixture.run("INSERT INTO ABPersonLink (ROWID, PreferredNamePersonID) VALUES (1, -1), (2, 4), (3, 77)");
  const auto book = fixture.book();
  EXPECT_EQ(book->store().personName(a), "Ann");
  EXPECT_EQ(book->store().personName(b), "Ann");
  EXPECT_EQ(book->store().namingCard(a), b);
  EXPECT_EQ(book->store().personName(c), "Cleo");
  EXPECT_EQ(book->store().personName(d), "Cleo");
  EXPECT_EQ(book->store().personName(e), "E.");
  EXPECT_EQ(book->store().personName(f), "E.");
}

TEST(ContactStore, ReadsOlderTablesThatLackColumns) {
  BookFixture fixture(":memory:",
                      "CREATE TABLE ABPerson (First TEXT, last TEXT, guid TEXT);"
                      "CREATE TABLE ABMultiValue (record_id INTEGER, value TEXT, property INTEGER, label INTEGER);"
                      "CREATE TABLE ABMultiValueLabel (value TEXT, UNIQUE (value));");
  const int ann = fixture.person("Ann", "Example");
  fixture.phone(ann, "+15550100123");
  const auto book = fixture.book();
  EXPECT_EQ(book->store().personName(ann), "Ann Example");
  EXPECT_EQ(book->matcher().match("+15550100123").record, ann);
  EXPECT_EQ(book->store().namingCard(ann), -1);
  EXPECT_EQ(book->store().ownCard(), -1);
}

TEST(ContactStore, TellsNumbersFromAddressesWhereTheStoreDoesNot) {
  BookFixture fixture(":memory:",
                      "CREATE TABLE ABPerson (First TEXT);"
                      "CREATE TABLE ABMultiValue (record_id INTEGER, value TEXT);"
                      "INSERT INTO ABPerson VALUES ('Ann');"
                      "INSERT INTO ABMultiValue VALUES (1, 'ann@example.com'), (1, '+15550100123')");
  const auto book = fixture.book();
  ASSERT_EQ(book->store().values().size(), 2u);
  EXPECT_EQ(book->store().values()[0].property, ABProperty::kEmail);
  EXPECT_EQ(book->store().values()[1].property, ABProperty::kPhone);
}

TEST(ContactStore, HasNoCardsWithoutAStoreOrTables) {
  const ContactStore absent{sqlite::Connection()};
  EXPECT_TRUE(absent.values().empty());
  EXPECT_EQ(absent.card(1), nullptr);
  EXPECT_EQ(absent.personName(1), "");
  EXPECT_EQ(absent.recordWithIdentifier("CARD-1"), -1);
  EXPECT_EQ(absent.ownCard(), -1);
  EXPECT_EQ(absent.problem(), "");

  BookFixture fixture(":memory:", "CREATE TABLE Other (a)");
  const auto book = fixture.book();
  EXPECT_TRUE(book->store().values().empty());
  EXPECT_EQ(book->store().card(1), nullptr);
  EXPECT_EQ(book->store().problem(), "");
}

TEST(ContactStore, RepairsTextThatIsNoUtf8) {
  BookFixture fixture;
  const int ann = fixture.person("Ann\xFF", "Example");
  fixture.email(ann, "\xFE@example.com", "\xFD");
  const auto book = fixture.book();
  EXPECT_EQ(book->store().personName(ann), "Ann\uFFFD Example");
  EXPECT_EQ(book->store().label(book->store().values()[0].label), "\uFFFD");
  EXPECT_EQ(recordInBook(book, ann)->values(ABProperty::kEmail)->front().value, "\uFFFD@example.com");
}

TEST(ContactStore, ReadsItsOwnTablesBehindTemporaryOnes) {
  BookFixture fixture;
  const int ann = fixture.person("Ann", "Example");
  fixture.phone(ann, "+15550100123");
  fixture.run(
      "CREATE TEMP TABLE ABMULTIVALUE (UID INTEGER PRIMARY KEY, record_id INTEGER, value TEXT);"
      "INSERT INTO temp.ABMULTIVALUE VALUES (1, 99, '+15550100199')");
  const auto book = fixture.book();
  ASSERT_EQ(book->store().values().size(), 1u);
  EXPECT_EQ(book->store().values()[0].text, "+15550100123");
}

TEST(ContactStore, SaysWhatADamagedStoreLacks) {
  BookFixture fixture;
  const int ann = fixture.person("Ann", "Example");
  fixture.phone(ann, "+15550100123");
  // A view of that name stands for a table that cannot be read to its end.
  fixture.run(
      "ALTER TABLE ABMultiValue RENAME TO Kept;"
      "CREATE VIEW ABMultiValue AS SELECT record_id, property, label, abs(-9223372036854775807 - 1) AS value FROM "
      "Kept");
  const auto book = fixture.book();
  EXPECT_TRUE(book->store().values().empty());
  EXPECT_NE(book->store().problem().find("address book could not be read completely"), std::string::npos);
  EXPECT_EQ(book->store().personName(ann), "Ann Example");
}

/// One of a store's tables breaks in the middle: a view of its name stands for one that cannot be read to its end.
struct BrokenTable {
  const char* name;
  const char* table;
  const char* columns;  // of the view
  std::function<void(const ContactStore&, int ann)> ask;
};
constexpr const char* kBroken = "abs(-9223372036854775807 - 1)";

class BrokenContactStore : public ::testing::TestWithParam<BrokenTable> {};

TEST_P(BrokenContactStore, SaysThatNamesMayBeMissing) {
  const BrokenTable& broken = GetParam();
  BookFixture fixture;
  const int ann = fixture.person({{"First", "Ann"}, {"PersonLink", "5"}});
  fixture.phone(ann, "+15550100123");
  fixture.run(
      "INSERT INTO ABPersonLink (ROWID, PreferredNamePersonID) VALUES (5, 1);"
      "INSERT INTO ABStore (Name, MeIdentifier) VALUES ('Local', 1)");
  const std::string table = broken.table;
  std::string columns = broken.columns;
  columns.replace(columns.find("BROKEN"), 6, kBroken);
  fixture.run("ALTER TABLE " + table + " RENAME TO Kept; CREATE VIEW " + table + " AS SELECT Kept.ROWID AS ROWID, " +
              columns + " FROM Kept");
  const auto book = fixture.book();
  broken.ask(book->store(), ann);
  EXPECT_EQ(book->store().problem(),
            "The address book could not be read completely (integer overflow), so names may be missing.");
}

INSTANTIATE_TEST_SUITE_P(
    Tables, BrokenContactStore,
    ::testing::Values(BrokenTable{"labels", "ABMultiValueLabel", "BROKEN AS value",
                                  [](const ContactStore& store, int) { (void)store.values(); }},
                      BrokenTable{"namingCards", "ABPerson", "First, Last, guid, PersonLink, BROKEN AS IsPreferredName",
                                  [](const ContactStore& store, int ann) { EXPECT_EQ(store.personName(ann), "Ann"); }},
                      BrokenTable{"links", "ABPersonLink", "BROKEN AS PreferredNamePersonID",
                                  [](const ContactStore& store, int ann) { EXPECT_EQ(store.personName(ann), "Ann"); }},
                      BrokenTable{
                          "identifiers", "ABPerson", "BROKEN AS guid",
                          [](const ContactStore& store, int) { EXPECT_EQ(store.recordWithIdentifier("CARD-1"), -1); }},
                      BrokenTable{"ownCard", "ABStore", "BROKEN AS MeIdentifier",
                                  [](const ContactStore& store, int) { EXPECT_EQ(store.ownCard(), -1); }}),
    [](const auto& broken) { return std::string(broken.param.name); });

TEST(ContactStore, ReadsTheSameWhileAReadingLastsAndAfterIt) {
  BookFixture fixture;
  const int ann = fixture.person("Ann", "Example");
  const int bob = fixture.person("Bob", "Example");
  fixture.phone(bob, "+15550100123");
  const auto book = fixture.book();
  {
    const ContactStore::Reading outer(book->store());
    const ContactStore::Reading inner(book->store());
    EXPECT_EQ(book->store().personName(ann), "Ann Example");
    EXPECT_EQ(book->store().values().size(), 1u);
  }
  EXPECT_EQ(book->store().personName(bob), "Bob Example");
  EXPECT_EQ(book->store().problem(), "");
  const ContactStore absent{sqlite::Connection()};
  const ContactStore::Reading reading(absent);
  EXPECT_EQ(absent.personName(ann), "");
}

TEST(ContactStore, FindsTheOwnersCard) {
  BookFixture fixture;
  const int ann = fixture.person("Ann", "Example");
  fixture.run("INSERT INTO ABStore (ROWID, Name, Enabled, MeIdentifier) VALUES (0, 'Local', 0, -1), (3, 'Other', 1, " +
              std::to_string(ann) + ")");
  EXPECT_EQ(fixture.book()->store().ownCard(), ann);
}

}  // namespace
}  // namespace chatsum::platform::system
