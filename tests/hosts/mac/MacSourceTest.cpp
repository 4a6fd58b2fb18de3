#include "hosts/device/mac/MacSource.h"

#include <fstream>

#include "tests/hosts/mac/MacBooks.h"
#include "tests/support/OrdinaryUser.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using test::macBookPath;
using test::MacBookWriter;
using testing::People;

class MacSourceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directory(folder_.path() + "/tmp");
    ::setenv("TMPDIR", (folder_.path() + "/tmp").c_str(), 1);
  }
  void TearDown() override { ::unsetenv("TMPDIR"); }
  void put(const std::string& path, const std::string& bytes = "x") {
    fs::create_directories((home() / path).parent_path());
    std::ofstream(home() / path) << bytes;
  }
  void addBook(const std::string& account, const std::string& first, const std::string& number) {
    MacBookWriter book(macBookPath(home(), account));
    book.add({.first = first, .phones = {{"", number}}});
    testing::finish(book);
  }
  [[nodiscard]] std::unique_ptr<DeviceSource> open() const {
    auto source = MacSource::open(home().string());
    if (!source) throw std::runtime_error(source.problem().sentence);
    return std::move(source.value());
  }
  [[nodiscard]] fs::path home() const { return fs::path(folder_.path()) / "maya"; }
  [[nodiscard]] std::string real(const std::string& path) const { return (home() / path).string(); }
  [[nodiscard]] std::string temporary() const { return folder_.path() + "/tmp"; }

  platform::fake::TemporaryFolder folder_;
};

constexpr const char* kCallsFolder = "Library/Application Support/CallHistoryDB/";

TEST_F(MacSourceTest, FindsTheStores) {
  put("Library/Messages/chat.db");
  put(std::string(kCallsFolder) + "CallHistory.storedata");
  put(std::string(kCallsFolder) + "CallHistoryTemp.storedata");
  const auto source = open();
  EXPECT_EQ(source->facts().kind, SourceKind::kMac);
  EXPECT_EQ(source->facts().path, home());
  EXPECT_FALSE(source->facts().isEncrypted);
  const auto pathOf = [&](SourceStore store) {
    const auto location = source->store(store);
    return location && location.value() ? location.value()->main : "";
  };
  EXPECT_EQ(pathOf(SourceStore::kMessages), real("Library/Messages/chat.db"));
  EXPECT_EQ(pathOf(SourceStore::kCalls), real(std::string(kCallsFolder) + "CallHistory.storedata"));
  EXPECT_EQ(pathOf(SourceStore::kTemporaryCalls), real(std::string(kCallsFolder) + "CallHistoryTemp.storedata"));
  EXPECT_EQ(pathOf(SourceStore::kOldCalls), "");
  EXPECT_EQ(pathOf(SourceStore::kAddressBook), "");
  EXPECT_NE(source->whyMissing(SourceStore::kAddressBook).find("AddressBook-v22.abcddb"), std::string::npos);
  EXPECT_TRUE(fs::is_empty(temporary()));
}

TEST_F(MacSourceTest, IsToldFromOtherFolders) {
  EXPECT_FALSE(MacSource::isMacHome(home().string()));
  put("Library/Messages/Archive/notes.txt");
  EXPECT_FALSE(MacSource::isMacHome(home().string()));
  EXPECT_FALSE(MacSource::open(home().string()));
  put(std::string(kCallsFolder) + "CallHistory.storedata");
  EXPECT_TRUE(MacSource::isMacHome(home().string()));
  EXPECT_TRUE(MacSource::isMacHome(home().string() + "/"));
}

TEST_F(MacSourceTest, MakesOneAddressBookOfAllAccounts) {
  put("Library/Messages/chat.db");
  addBook("", "Maya", "+15550100101");
  addBook("B-1", "Bob", "+15550100102");
  addBook("A-1", "Ann", "+15550100103");
  put("Library/Application Support/AddressBook/Sources/Empty/notes.txt");
  {
    const auto source = open();
    const auto location = source->store(SourceStore::kAddressBook);
    ASSERT_TRUE(location && location.value()) << location.problem().sentence;
    const People people(*location.value());
    EXPECT_EQ(people.rows("SELECT First FROM ABPerson ORDER BY ROWID"),
              (std::vector<std::string>{"Maya", "Ann", "Bob"}));
    EXPECT_EQ(source->store(SourceStore::kAddressBook).value()->main, location.value()->main) << "it is made once";
    std::vector<std::string> names;
    for (const SourceFile& file : source->originals(SourceStore::kAddressBook)) {
      EXPECT_EQ(file.path, real(file.name));
      names.push_back(file.name);
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"Library/Application Support/AddressBook/AddressBook-v22.abcddb",
                                        "Library/Application Support/AddressBook/Sources/A-1/AddressBook-v22.abcddb",
                                        "Library/Application Support/AddressBook/Sources/B-1/AddressBook-v22.abcddb"}));
    EXPECT_FALSE(fs::is_empty(temporary()));
  }
  EXPECT_TRUE(fs::is_empty(temporary()));
}

TEST_F(MacSourceTest, WarnsOfABookThatIsLeftOut) {
  put("Library/Messages/chat.db");
  addBook("A", "Ann", "+15550100103");
  put("Library/Application Support/AddressBook/AddressBook-v22.abcddb", "no database");
  const auto source = open();
  EXPECT_TRUE(source->facts().warnings.empty());
  const auto location = source->store(SourceStore::kAddressBook);
  ASSERT_TRUE(location && location.value());
  EXPECT_EQ(People(*location.value()).name("+15550100103"), "Ann");
  ASSERT_EQ(source->facts().warnings.size(), 1U);
  EXPECT_NE(source->facts().warnings[0].find("text file"), std::string::npos) << source->facts().warnings[0];
}

TEST_F(MacSourceTest, FindsFilesOfMessagesHoweverTheirHomeWasCalled) {
  put("Library/Messages/chat.db");
  put("Library/Messages/Attachments/ab/IMG.png");
  const auto source = open();
  for (const std::string start : {"~", "User", "/User", "/Users/maya", "/Users/someone else"}) {
    const std::string path = start + "/Library/Messages/Attachments/ab/IMG.png";
    EXPECT_EQ(source->fileOfMessage(path), real("Library/Messages/Attachments/ab/IMG.png")) << path;
    EXPECT_EQ(source->originalOfMessage(path)->name, "Library/Messages/Attachments/ab/IMG.png");
  }
  // As a device calls them, of whom the Mac got its messages.
  EXPECT_EQ(source->fileOfMessage("/var/mobile/Library/SMS/Attachments/ab/IMG.png"),
            real("Library/Messages/Attachments/ab/IMG.png"));
}

TEST_F(MacSourceTest, AnswersNothingButWhatMessagesKeeps) {
  put("Library/Messages/chat.db");
  put("Library/Mail/secret.txt");
  put("secret.txt");
  std::ofstream(folder_.path() + "/outside.txt") << "x";
  fs::create_symlink(folder_.path() + "/outside.txt", home() / "Library/Messages/link");
  fs::create_symlink("../../secret.txt", home() / "Library/Messages/up");
  fs::create_symlink(folder_.path(), home() / "Library/Messages/folder");
  const auto source = open();
  for (const std::string path :
       {"~/Library/Mail/secret.txt", "~/secret.txt", "~/Library/Messages/../Mail/secret.txt",
        "~/Library/Messages/../../secret.txt", "~/Library/Messages/link", "~/Library/Messages/up",
        "~/Library/Messages/folder/outside.txt", "/etc/passwd", "/Users/maya/../../etc/passwd", "/Users/maya",
        "/Users//Library/Messages/chat.db", "/Users/../Library/Messages/chat.db", "Library/Messages/chat.db", "",
        "~/Library/Messages/missing.png"}) {
    EXPECT_EQ(source->fileOfMessage(path), std::nullopt) << path;
    EXPECT_FALSE(source->originalOfMessage(path).has_value()) << path;
  }
}

TEST_F(MacSourceTest, ReadsNoStoreByALinkThatLeadsOut) {
  std::ofstream(folder_.path() + "/chat.db") << "x";
  MacBookWriter outside(macBookPath(folder_.path() + "/other"));
  outside.add({.first = "Somebody"});
  testing::finish(outside);
  put(std::string(kCallsFolder) + "CallHistory.storedata");
  fs::create_directories(home() / "Library/Messages");
  fs::create_symlink(folder_.path() + "/chat.db", home() / "Library/Messages/chat.db");
  fs::create_directories(macBookPath(home()).parent_path().parent_path());
  fs::create_symlink(macBookPath(folder_.path() + "/other").parent_path(), macBookPath(home()).parent_path());
  const auto source = open();
  for (const SourceStore store : {SourceStore::kMessages, SourceStore::kAddressBook}) {
    const auto location = source->store(store);
    ASSERT_TRUE(location) << location.problem().sentence;
    EXPECT_FALSE(location.value().has_value());
    EXPECT_TRUE(source->originals(store).empty());
  }
}

TEST_F(MacSourceTest, SaysThatAWalAloneIsNoStore) {
  put("Library/Messages/chat.db-wal");
  ASSERT_TRUE(MacSource::isMacHome(home().string()));
  const auto location = open()->store(SourceStore::kMessages);
  ASSERT_FALSE(location);
  EXPECT_NE(location.problem().sentence.find("chat.db itself is missing"), std::string::npos);
}

TEST_F(MacSourceTest, SaysWhatMayNotBeRead) {
  put("Library/Messages/chat.db");
  addBook("A", "Ann", "+15550100103");
  fs::permissions(folder_.path(), fs::perms::all);
  fs::permissions(home() / "Library/Messages", fs::perms::none);
  fs::permissions(macBookPath(home()).parent_path(), fs::perms::none);
  {
    const test::OrdinaryUser user;
    EXPECT_TRUE(MacSource::isMacHome(home().string()));
    const auto source = open();
    for (const SourceStore store : {SourceStore::kMessages, SourceStore::kAddressBook}) {
      const auto location = source->store(store);
      ASSERT_FALSE(location);
      EXPECT_NE(location.problem().sentence.find("may not be read"), std::string::npos) << location.problem().sentence;
    }
  }
  fs::permissions(home() / "Library/Messages", fs::perms::owner_all);
  fs::permissions(macBookPath(home()).parent_path(), fs::perms::owner_all);
}

TEST_F(MacSourceTest, KnowsTheHomeAroundAStore) {
  EXPECT_EQ(MacSource::around("/copy/maya/Library/Messages/chat.db")->facts().path, "/copy/maya");
  EXPECT_EQ(MacSource::around("/Library/Messages/chat.db")->facts().path, "/");
  EXPECT_EQ(MacSource::around("/copy/chat.db"), nullptr);
  EXPECT_EQ(MacSource::around("/copy/MyLibrary/Messages/chat.db"), nullptr);
}

}  // namespace
}  // namespace chatsum::device
