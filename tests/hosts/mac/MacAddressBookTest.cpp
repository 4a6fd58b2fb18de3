#include "hosts/device/mac/MacAddressBook.h"

#include <fstream>

#include "tests/hosts/mac/MacBooks.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using test::MacBookWriter;
using testing::People;

class MacAddressBook : public ::testing::Test {
 protected:
  [[nodiscard]] std::string path(const std::string& name) const { return folder_.path() + "/" + name; }
  [[nodiscard]] ConvertedBook convert(const std::vector<std::string>& names) const {
    std::vector<std::string> paths;
    for (const std::string& name : names) paths.push_back(path(name));
    auto book = convertMacBooks(paths);
    if (!book) throw std::runtime_error(book.problem().sentence);
    return std::move(book.value());
  }

  platform::fake::TemporaryFolder folder_;
};

TEST_F(MacAddressBook, HoldsTheCardsOfAllBooksWhateverTheirEntitiesAreCalled) {
  MacBookWriter home(path("home"), {.contactEntity = 22}), work(path("work"), {.contactEntity = 19});
  home.addGroup("Family");
  home.add({.first = "Maya", .last = "Lindqvist", .phones = {{"_$!<Mobile>!$_", "(555) 010-0142"}}});
  work.add({.first = "Daniel", .last = "Okafor", .emails = {{"_$!<Work>!$_", "Daniel@example.com"}}});
  testing::finish(home);
  testing::finish(work);
  const ConvertedBook book = convert({"home", "work"});
  EXPECT_TRUE(book.warnings.empty());
  const People people(book.location);
  EXPECT_EQ(people.name("+15550100142"), "Maya Lindqvist");
  EXPECT_EQ(people.resolve("+15550100142").label, "mobile");
  EXPECT_EQ(people.name("daniel@example.com"), "Daniel Okafor");
  EXPECT_EQ(people.rows("SELECT First FROM ABPerson ORDER BY ROWID"), (std::vector<std::string>{"Maya", "Daniel"}));
  EXPECT_EQ(people.problem(), "");
}

TEST_F(MacAddressBook, HasTheTablesOfADevice) {
  MacBookWriter writer(path("a"));
  testing::finish(writer);
  const ConvertedBook book = convert({"a"});
  const People people(book.location);
  for (const std::string table : {"ABPerson", "ABMultiValue", "ABMultiValueLabel", "ABMultiValueEntry",
                                  "ABMultiValueEntryKey", "ABPersonLink", "ABStore", "_SqliteDatabaseProperties"}) {
    EXPECT_EQ(people.rows("SELECT name FROM sqlite_master WHERE type = 'table' AND name = '" + table + "'").size(), 1U)
        << table;
  }
}

TEST_F(MacAddressBook, LinksTheCardsOfOnePersonInDifferentBooks) {
  MacBookWriter home(path("home")), work(path("work"), {.contactEntity = 19});
  home.add({.nickname = "Sis", .link = "L1", .phones = {{"", "+15550100101"}}});
  home.add({.first = "Somebody", .last = "Else", .phones = {{"", "+15550100109"}}});
  work.add({.first = "Ida", .last = "Berg", .link = "L1", .emails = {{"", "ida@example.com"}}});
  testing::finish(home);
  testing::finish(work);
  const ConvertedBook book = convert({"home", "work"});
  const People people(book.location);
  EXPECT_EQ(people.name("+15550100101"), "Ida Berg") << "the card with a real name gives it";
  EXPECT_EQ(people.name("ida@example.com"), "Ida Berg");
  EXPECT_EQ(people.name("+15550100109"), "Somebody Else");
  EXPECT_EQ(people.rows("SELECT PersonLink FROM ABPerson ORDER BY ROWID"), (std::vector<std::string>{"1", "-1", "1"}));
}

TEST_F(MacAddressBook, TakesTheNameOfLinkedCardsFromTheMarkedOne) {
  MacBookWriter writer(path("a"));
  writer.add({.first = "Robert", .last = "Berg", .link = "L1", .phones = {{"", "+15550100101"}}});
  writer.add({.first = "Bob", .link = "L1", .givesName = true});
  testing::finish(writer);
  const ConvertedBook book = convert({"a"});
  EXPECT_EQ(People(book.location).name("+15550100101"), "Bob");
}

TEST_F(MacAddressBook, TakesTheSameCardInTwoBooksForOnePerson) {
  MacBookWriter one(path("one")), two(path("two"));
  one.add({.first = "Ida", .identifier = "A1:ABPerson", .phones = {{"", "+15550100101"}}});
  two.add({.first = "Ida", .last = "Berg", .identifier = "A1:ABPerson", .phones = {{"", "+15550100101"}}});
  testing::finish(one);
  testing::finish(two);
  const ConvertedBook book = convert({"one", "two"});
  const ResolvedHandle ida = People(book.location).resolve("+15550100101");
  EXPECT_FALSE(ida.ambiguous);
  EXPECT_EQ(ida.name, "Ida");
}

TEST_F(MacAddressBook, LeavesDifferentPeopleWithOneNumberApart) {
  MacBookWriter one(path("one")), two(path("two"));
  one.add({.first = "Ann", .last = "Example", .phones = {{"", "+1 555 010 0123"}}});
  two.add({.first = "Bob", .last = "Example", .phones = {{"", "+1 (555) 010-0123"}}});
  testing::finish(one);
  testing::finish(two);
  const ConvertedBook book = convert({"one", "two"});
  const ResolvedHandle shared = People(book.location).resolve("+15550100123");
  EXPECT_TRUE(shared.ambiguous);
  EXPECT_EQ(shared.candidates, (std::vector<std::string>{"Ann Example", "Bob Example"}));
}

TEST_F(MacAddressBook, NamesOrganizations) {
  for (const bool hasFlags : {true, false}) {
    MacBookWriter writer(path("a"), {.hasFlags = hasFlags});
    writer.add({.organization = "Harbour Dental Clinic", .phones = {{"", "+15550100120"}}});
    writer.add({.first = "Vera",
                .organization = "Vera's Garage",
                .phones = {{"", "+15550100121"}},
                .isShownAsOrganization = true});
    testing::finish(writer);
    const ConvertedBook book = convert({"a"});
    const People people(book.location);
    EXPECT_EQ(people.name("+15550100120"), "Harbour Dental Clinic");
    EXPECT_EQ(people.name("+15550100121"), hasFlags ? "Vera's Garage" : "Vera");
  }
}

TEST_F(MacAddressBook, KeepsLabelsAndTheOrderOfValues) {
  MacBookWriter writer(path("a"));
  writer.add(
      {.first = "Ann", .phones = {{"_$!<Home>!$_", "+15550100101"}, {"boat", "+15550100102"}, {"", "+15550100103"}}});
  writer.add({.first = "Bob", .phones = {{"boat", "+15550100104"}}});
  testing::finish(writer);
  const ConvertedBook book = convert({"a"});
  const People people(book.location);
  EXPECT_EQ(people.resolve("+15550100101").label, "home");
  EXPECT_EQ(people.resolve("+15550100102").label, "boat");
  EXPECT_EQ(people.resolve("+15550100103").label, "");
  EXPECT_EQ(people.resolve("+15550100104").label, "boat");
  EXPECT_EQ(people.rows("SELECT value FROM ABMultiValue ORDER BY record_id, identifier"),
            (std::vector<std::string>{"+15550100101", "+15550100102", "+15550100103", "+15550100104"}));
  EXPECT_EQ(people.rows("SELECT value FROM ABMultiValueLabel").size(), 2U);
}

TEST_F(MacAddressBook, KnowsTheOwnCard) {
  MacBookWriter writer(path("a"));
  writer.add({.first = "Ann"});
  writer.add({.first = "Noor", .last = "Haddad", .isOwn = true});
  testing::finish(writer);
  EXPECT_EQ(People(convert({"a"}).location).ownName(), "Noor Haddad");

  MacBookWriter other(path("b"), {.hasFlags = false});
  other.execute("ALTER TABLE ZABCDRECORD ADD COLUMN ZME INTEGER");
  other.add({.first = "Ann"});
  other.add({.first = "Noor", .last = "Haddad"});
  other.execute("INSERT INTO ZABCDRECORD (Z_PK, Z_ENT, ZME) VALUES (9, 23, 2)");
  testing::finish(other);
  EXPECT_EQ(People(convert({"b"}).location).ownName(), "Noor Haddad");
}

TEST_F(MacAddressBook, ReadsABookThatHasOnlyItsWal) {
  MacBookWriter writer(path("a"), {.placement = Placement::wal});
  writer.add({.first = "Maya", .phones = {{"", "+15550100142"}}});
  testing::finish(writer);
  ASSERT_EQ(fs::file_size(path("a")), 4096U);
  EXPECT_EQ(People(convert({"a"}).location).name("+15550100142"), "Maya");
}

TEST_F(MacAddressBook, LeavesOutBooksThatCannotBeRead) {
  MacBookWriter writer(path("good"));
  writer.add({.first = "Maya", .phones = {{"", "+15550100142"}}});
  testing::finish(writer);
  std::ofstream(path("text")) << "no database";
  MacBookWriter cut(path("cut"));
  for (int i = 0; i < 200; ++i) cut.add({.first = std::string(100, 'x')});
  testing::finish(cut);
  fs::resize_file(path("cut"), 20'000);
  const ConvertedBook book = convert({"text", "cut", "good", "missing"});
  ASSERT_EQ(book.warnings.size(), 3U);
  EXPECT_NE(book.warnings[0].find("/text' is a text file"), std::string::npos) << book.warnings[0];
  EXPECT_NE(book.warnings[1].find("/cut' is cut off"), std::string::npos) << book.warnings[1];
  EXPECT_EQ(People(book.location).name("+15550100142"), "Maya");

  const auto none = convertMacBooks({path("text"), path("missing")});
  ASSERT_FALSE(none);
  EXPECT_NE(none.problem().sentence.find("text file"), std::string::npos);
}

TEST_F(MacAddressBook, SaysWhenTheWalOfABookIsMissing) {
  MacBookWriter writer(path("a"), {.placement = Placement::wal});
  testing::finish(writer);
  fs::remove(path("a-wal"));
  const auto book = convertMacBooks({path("a")});
  ASSERT_FALSE(book);
  EXPECT_NE(book.problem().sentence.find("a-wal', which is missing"), std::string::npos) << book.problem().sentence;
}

TEST_F(MacAddressBook, DoesWithoutTheNamesOfEntitiesAndWithoutColumns) {
  MacBookWriter writer(path("a"), {.namesEntities = false, .hasFlags = false});
  writer.addGroup("Family");
  writer.add({.first = "Maya", .phones = {{"", "+15550100142"}}});
  writer.add({.emails = {{"", "ann@example.com"}}});
  writer.execute(
      "ALTER TABLE ZABCDRECORD DROP COLUMN ZLINKID; ALTER TABLE ZABCDRECORD DROP COLUMN ZORGANIZATION;"
      "ALTER TABLE ZABCDPHONENUMBER DROP COLUMN ZORDERINGINDEX; ALTER TABLE ZABCDEMAILADDRESS DROP COLUMN ZADDRESS");
  testing::finish(writer);
  const ConvertedBook book = convert({"a"});
  const People people(book.location);
  EXPECT_EQ(people.name("+15550100142"), "Maya");
  EXPECT_EQ(people.name("ann@example.com"), "ann@example.com") << "by the address in small letters";
  EXPECT_EQ(people.rows("SELECT ROWID FROM ABPerson").size(), 2U) << "the group is nobody";
}

TEST_F(MacAddressBook, TakesTextsAsTheyAre) {
  const std::string hostile = "O'Brien\"); DROP TABLE ABPerson; --";
  MacBookWriter writer(path("a"));
  writer.add({.first = hostile, .last = "../../etc", .phones = {{"x'); --", "+15550100101"}}});
  writer.add({.first = std::string("Zo\xEB", 3), .phones = {{"", "+15550100102"}}});
  writer.add({.first = std::string("A\0B", 3), .phones = {{"", "+15550100103"}}});
  writer.add({.first = std::string(100'000, 'x'), .last = "Long", .phones = {{"", "+15550100104"}}});
  writer.execute(
      "INSERT INTO ZABCDPHONENUMBER (Z_PK, ZOWNER, ZFULLNUMBER) VALUES (900, 77, '+15550100105'), "
      "(901, NULL, '+15550100106'), (902, 'x', x'00ff')");
  testing::finish(writer);
  const ConvertedBook book = convert({"a"});
  const People people(book.location);
  EXPECT_EQ(people.name("+15550100101"), hostile + " ../../etc");
  EXPECT_EQ(people.resolve("+15550100101").label, "x'); --");
  EXPECT_EQ(people.name("+15550100102"), "Zo\uFFFD");
  EXPECT_EQ(people.name("+15550100103"), std::string("A\0B", 3));
  EXPECT_EQ(people.name("+15550100104"), "Long") << "a name of that length is none";
  EXPECT_EQ(people.resolve("+15550100105").record, -1);
  EXPECT_EQ(people.rows("SELECT ROWID FROM ABPerson").size(), 4U);
}

TEST_F(MacAddressBook, RefusesAViewInThePlaceOfATable) {
  StoreFile file(path("a"), Placement::mainFile,
                 "CREATE VIEW ZABCDRECORD AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
                 "SELECT i AS Z_PK, 22 AS Z_ENT, 'x' AS ZFIRSTNAME FROM n;");
  ASSERT_FALSE(file.finish("").has_value());
  const auto book = convertMacBooks({path("a")});
  ASSERT_FALSE(book);
  EXPECT_NE(book.problem().sentence.find("without any tables"), std::string::npos) << book.problem().sentence;
}

TEST_F(MacAddressBook, TakesItsPrivateFolderAlong) {
  const std::string temporary = path("tmp");
  fs::create_directory(temporary);
  ::setenv("TMPDIR", temporary.c_str(), 1);
  MacBookWriter writer(path("a"), {.placement = Placement::wal});
  testing::finish(writer);
  {
    const ConvertedBook book = convert({"a"});
    EXPECT_TRUE(book.location.main.starts_with(temporary));
    EXPECT_EQ(book.location.shownPath, path("a"));
    EXPECT_EQ(std::distance(fs::directory_iterator(temporary), {}), 1) << "the copy that was read is gone";
  }
  EXPECT_TRUE(fs::is_empty(temporary));
  ::unsetenv("TMPDIR");
}

}  // namespace
}  // namespace chatsum::device
