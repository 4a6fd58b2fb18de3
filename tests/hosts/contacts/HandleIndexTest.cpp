#include "hosts/device/contacts/HandleIndex.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "hosts/device/contacts/HandleAddressBook.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"
#include "platform/system/contacts/SystemContacts.h"
#include "tests/unit/contacts/BookFixture.h"

namespace chatsum::device {
namespace {

using platform::ABRecordID;
using platform::system::ContactBook;
using platform::system::kAddressBookPath;
using tests::BookFixture;

/// A device whose address-book connections carry the index, and the library asking it. The book is written into
/// `fixture` before the first question.
class HandleIndexTest : public ::testing::Test {
 protected:
  HandleIndexTest() { std::filesystem::create_directories(std::filesystem::path(path()).parent_path()); }

  std::string path() const { return fake_.realPath(kAddressBookPath); }

  BookFixture makeStore() { return BookFixture(path()); }

  /// The library is asked from here on.
  void serve(std::vector<std::string> handles, const std::string& region = "US") {
    book_ = std::make_shared<ContactBook>(
        [this] { return std::filesystem::exists(path()) ? open() : sqlite::Connection(); }, region);
    index_.emplace(book_->matcher(), handles, fake_.strings);
    contacts_.emplace(book_);
    addressBook_.emplace(book_, std::move(handles));
    files_.emplace(platform::system::FilesOptions{
        "/var/mobile", [this](const std::string& devicePath) { return fake_.realPath(devicePath); },
        [this](const std::string& devicePath, sqlite3** database) -> std::optional<int> {
          if (devicePath != kAddressBookPath) return std::nullopt;
          const bool exists = std::filesystem::exists(path());
          const int code = sqlite3_open_v2(exists ? path().c_str() : ":memory:", database,
                                           exists ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE, nullptr);
          EXPECT_TRUE(index_->install(*database)) << sqlite3_errmsg(*database);
          return code;
        }});
    const platform::Platform& fake = fake_.platform();
    platform_.emplace(platform::Platform{fake.log, fake.clock, *files_, fake.mainBundle, fake.device, fake.runtime,
                                         fake.uniformTypes, fake.dateFormatting, fake.strings, fake.propertyLists,
                                         fake.graphics, fake.artwork, *contacts_, *addressBook_, fake.messages, fake.dispatch,
                                         fake.darwinNotifications, fake.companion, fake.screen});
    scope_.emplace(*platform_);
    // The process may hold another test's index.
    ChatsumUtils::loadAddressBook();
  }

  static ABRecordID found(const std::string& handle) {
    return ChatsumUtils::addressBookRecordForPhoneNumber(handle, ChatsumUtils::addressBook());
  }

  static std::string label(const std::string& handle) {
    return ChatsumUtils::label(ChatsumUtils::addressBook()->personWithRecordID(found(handle)), handle);
  }

  sqlite::Connection open() const {
    sqlite3* handle = nullptr;
    sqlite3_open_v2(path().c_str(), &handle, SQLITE_OPEN_READONLY, nullptr);
    return sqlite::Connection(handle);
  }

  platform::fake::FakePlatform fake_;
  std::shared_ptr<const ContactBook> book_;
  std::optional<HandleIndex> index_;
  std::optional<platform::system::SystemContacts> contacts_;
  std::optional<HandleAddressBook> addressBook_;
  std::optional<platform::system::SystemFiles> files_;
  std::optional<platform::Platform> platform_;
  std::optional<platform::fake::ScopedPlatform> scope_;
};

TEST_F(HandleIndexTest, GivesAHandleThatIsPartOfAnotherItsOwnPerson) {
  int joann = 0, ann = 0;
  {
    BookFixture fixture = makeStore();
    joann = fixture.person("Joann", "Example");
    fixture.email(joann, "joann@example.com");
    ann = fixture.person("Ann", "Example");
    fixture.email(ann, "ann@example.com");
  }
  serve({"joann@example.com", "nn@example.com", "ann@example.com"});
  EXPECT_EQ(found("ann@example.com"), ann);
  EXPECT_EQ(found("joann@example.com"), joann);
  EXPECT_EQ(found("nn@example.com"), -1);
}

TEST_F(HandleIndexTest, FindsNumbersThatTheCardWritesDifferently) {
  int ann = 0, bob = 0;
  {
    BookFixture fixture = makeStore();
    ann = fixture.person("Ann", "Example");
    fixture.phone(ann, "(555) 010-0123");
    bob = fixture.person("Bob", "Example");
    fixture.phone(bob, "555.010.0124", "_$!<Work>!$_");
    fixture.email(bob, "Bob@Example.com", "_$!<Home>!$_");
  }
  serve({"+15550100123", "5550100123", "+1 (555) 010-0123", "+15550100124", "bob@example.com", "+445550100123"});
  EXPECT_EQ(found("+15550100123"), ann);
  EXPECT_EQ(found("5550100123"), ann);
  EXPECT_EQ(found("+1 (555) 010-0123"), ann);
  EXPECT_EQ(found("+15550100124"), bob);
  EXPECT_EQ(found("+445550100123"), -1);
  EXPECT_EQ(label("+15550100123"), "mobile");
  EXPECT_EQ(label("+15550100124"), "work");
  EXPECT_EQ(label("bob@example.com"), "home");
}

TEST_F(HandleIndexTest, FindsFrenchNumbersByTheirNationalForm) {
  int ann = 0;
  {
    BookFixture fixture = makeStore();
    ann = fixture.person("Ann", "Example");
    fixture.phone(ann, "+33 6 12 34 56 78", "iPhone");
  }
  serve({"0612345678", "+33612345678"}, "FR");
  EXPECT_EQ(found("0612345678"), ann);
  EXPECT_EQ(found("+33612345678"), ann);
  EXPECT_EQ(label("0612345678"), "iPhone");
}

TEST_F(HandleIndexTest, KeepsNumbersOfDifferentCountriesApart) {
  int local = 0, abroad = 0;
  {
    BookFixture fixture = makeStore();
    local = fixture.person("Ann", "Example");
    fixture.phone(local, "555-010-0123", "_$!<Home>!$_");
    abroad = fixture.person("Bob", "Example");
    fixture.phone(abroad, "+44 555 010 0123");
  }
  serve({"+445550100123", "5550100123"});
  EXPECT_EQ(found("5550100123"), local);
  EXPECT_EQ(found("+445550100123"), abroad);
  EXPECT_EQ(label("5550100123"), "home");
}

TEST_F(HandleIndexTest, LeavesAnAmbiguousHandleWithoutAPerson) {
  {
    BookFixture fixture = makeStore();
    fixture.phone(fixture.person("Ann", "Example"), "+15550100123");
    fixture.phone(fixture.person("Bob", "Example"), "+15550100123");
  }
  serve({"+15550100123"});
  EXPECT_EQ(found("+15550100123"), -1);
}

TEST_F(HandleIndexTest, GivesNobodyWhereTheSearchCannotTellHandlesApart) {
  int ann = 0;
  {
    BookFixture fixture = makeStore();
    ann = fixture.person("Ann", "Example");
    fixture.email(ann, "ann@example.com");
    fixture.email(ann, "zoe@example.com");
    fixture.email(ann, "zoé@example.com");
  }
  serve({"änn@example.com", "ann@example.com", "ANN@example.com", "zoe@example.com", "zoé@example.com"});
  EXPECT_EQ(found("ann@example.com"), -1) << "änn@example.com is somebody else";
  EXPECT_EQ(found("änn@example.com"), -1);
  EXPECT_EQ(found("zoe@example.com"), ann);
  EXPECT_EQ(found("zoé@example.com"), ann);
}

TEST_F(HandleIndexTest, FindsTheContactOfAShortCodeByItself) {
  int shop = 0, decoy = 0;
  {
    BookFixture fixture = makeStore();
    decoy = fixture.person("Bob", "Example");
    fixture.phone(decoy, "+15550100123");
    shop = fixture.person("Example", "Shop");
    // Of these numbers the first would match anybody, the second is Bob's too.
    fixture.phone(shop, "%");
    fixture.phone(shop, "_15550100123");
    fixture.phone(shop, "22222", "_$!<Work>!$_");
  }
  serve({"+15550100123", "22222", "2222", "33333"});
  EXPECT_EQ(found("22222"), shop);
  EXPECT_EQ(found("+15550100123"), decoy);
  EXPECT_EQ(found("2222"), -1);
  EXPECT_EQ(found("33333"), -1);
  EXPECT_EQ(label("22222"), "work");
}

TEST_F(HandleIndexTest, ServesSenderNamesAndStrangeHandles) {
  int shop = 0, brien = 0;
  {
    BookFixture fixture = makeStore();
    shop = fixture.person("Example", "Shop");
    fixture.phone(shop, "ExampleShop");
    fixture.phone(shop, "Shop");
    brien = fixture.person("Pat", "O'Brien");
    fixture.email(brien, "o'brien@example.com");
    fixture.phone(fixture.person("Unknown", "Example"), "5550100199");
  }
  serve({"", "unknown@example.com", "ExampleShop", "Shop", "SHOP", "o'brien@example.com", "urn:biz:5550100199", "(-)",
         "\xFF\xFE\xFD\xFC\xFB\xFA"});
  EXPECT_EQ(found("ExampleShop"), shop);
  EXPECT_EQ(found("Shop"), shop);
  EXPECT_EQ(found("o'brien@example.com"), brien);
  EXPECT_EQ(found(""), -1);
  EXPECT_EQ(found("unknown@example.com"), -1);
  EXPECT_EQ(found("urn:biz:5550100199"), -1);
  EXPECT_EQ(found("(-)"), -1);
  EXPECT_EQ(found("\xFF\xFE\xFD\xFC\xFB\xFA"), -1);
}

TEST_F(HandleIndexTest, FindsNobodyWithoutAnAddressBook) {
  serve({"+15550100123", "22222", "ann@example.com"});
  EXPECT_EQ(found("+15550100123"), -1);
  EXPECT_EQ(found("22222"), -1);
  EXPECT_EQ(found("ann@example.com"), -1);
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("Example Street"), -1);
  EXPECT_FALSE(fake_.log.contains("Error"));
  EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(HandleIndexTest, PutsEveryHandleBeforeThoseThatContainIt) {
  makeStore();
  serve({"bcann@example.com", "cann@example.com", "ann@example.com", "+15550100123", "5550100123", "ann@example.com"});
  const auto& rows = index_->rows();
  ASSERT_EQ(rows.size(), 5u);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (std::size_t k = i + 1; k < rows.size(); ++k) {
      EXPECT_EQ(rows[i].value.find(rows[k].value), std::string::npos) << rows[k].value << " after " << rows[i].value;
    }
  }
}

TEST_F(HandleIndexTest, LeavesTheStoreItselfAlone) {
  {
    BookFixture fixture = makeStore();
    fixture.phone(fixture.person("Ann", "Example"), "(555) 010-0123");
  }
  serve({"+15550100123"});
  sqlite3* handle = nullptr;
  ASSERT_EQ(files_->openDatabase(kAddressBookPath, &handle), SQLITE_OK);
  const sqlite::Connection connection(handle);
  const sqlite::Statement shadow(handle, "SELECT count(*), min(value) FROM ABMULTIVALUE");
  ASSERT_EQ(shadow.step(), SQLITE_ROW);
  EXPECT_EQ(shadow.integer(0), 1);
  EXPECT_EQ(shadow.text(1), "+15550100123");
  const sqlite::Statement stored(handle, "SELECT value FROM main.ABMultiValue");
  ASSERT_EQ(stored.step(), SQLITE_ROW);
  EXPECT_EQ(stored.text(0), "(555) 010-0123");
  EXPECT_FALSE(connection.execute("DELETE FROM main.ABMultiValue"));
}

TEST_F(HandleIndexTest, MayBeInstalledAgain) {
  makeStore();
  serve({"+15550100123"});
  sqlite::Connection connection = open();
  EXPECT_TRUE(index_->install(connection.get()));
  EXPECT_TRUE(index_->install(connection.get()));
  const sqlite::Statement count(connection.get(), "SELECT count(*) FROM ABMULTIVALUE");
  ASSERT_EQ(count.step(), SQLITE_ROW);
  EXPECT_EQ(count.integer(0), 1);
}

TEST_F(HandleIndexTest, SaysWhenItCannotBeInstalled) {
  makeStore();
  serve({"+15550100123"});
  sqlite::Connection connection = open();
  ASSERT_TRUE(connection.execute("PRAGMA query_only = ON"));
  EXPECT_FALSE(index_->install(connection.get()));
  EXPECT_NE(connection.lastError(), "not an error");
}

}  // namespace
}  // namespace chatsum::device
