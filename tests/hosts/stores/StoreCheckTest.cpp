#include "hosts/device/stores/StoreCheck.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <random>

#include "hosts/device/stores/StoreColumns.h"
#include "tests/hosts/stores/StoreFixtures.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using testing::connect;
using testing::makeStore;
using testing::makeWalStore;
using testing::messagesSchema;
using testing::TestFolder;
using testing::writeFile;

constexpr const char* kCopyAgain = "; copy it again from the device or backup.";

// What a person is told about the Messages store at `path`, its path replaced by PATH; "" when all is well.
std::string verdict(const std::string& path) {
  const auto snapshot = StoreSnapshot::take(path);
  std::string sentence;
  if (!snapshot) {
    sentence = snapshot.problem().sentence;
  } else if (const auto problem = checkStore(connect(snapshot.value()).get(), snapshot.value(), messagesStore())) {
    sentence = problem->sentence;
  }
  for (std::size_t at = 0; !path.empty() && (at = sentence.find(path, at)) != std::string::npos; at += 4) {
    sentence.replace(at, path.size(), "PATH");
  }
  return sentence;
}

std::string verdictOnBytes(const std::string& bytes) {
  const TestFolder folder;
  writeFile(folder / "sms.db", bytes);
  return verdict(folder / "sms.db");
}

std::string verdictOnSql(const std::string& sql) {
  const TestFolder folder;
  makeStore(folder / "sms.db", sql);
  return verdict(folder / "sms.db");
}

std::string storeBytes() {
  const TestFolder folder;
  makeStore(folder / "sms.db", messagesSchema(17));
  return testing::readFile(folder / "sms.db");
}

TEST(StoreCheck, AcceptsStoresOfEveryGeneration) {
  for (const int system : {6, 9, 10, 11, 14, 17, 18}) EXPECT_EQ(verdictOnSql(messagesSchema(system)), "") << system;
}

TEST(StoreCheck, NamesAMissingFile) {
  const TestFolder folder;
  EXPECT_EQ(verdict(folder / "sms.db"), "There is no file 'PATH'; check the path.");
  writeFile(folder / "file", "x");
  EXPECT_EQ(verdict(folder / "file/sms.db"), "There is no file 'PATH'; check the path.");
  EXPECT_EQ(verdict(""), "There is no file ''; check the path.");
}

TEST(StoreCheck, NamesALinkThatLeadsNowhere) {
  const TestFolder folder;
  fs::create_symlink(folder / "gone", folder / "sms.db");
  EXPECT_EQ(verdict(folder / "sms.db"), "'PATH' is a link to a file that is not there; copy the file itself.");
}

TEST(StoreCheck, NamesALinkThatLeadsToItself) {
  const TestFolder folder;
  fs::create_symlink(folder / "sms.db", folder / "sms.db");
  EXPECT_EQ(verdict(folder / "sms.db"),
            "'PATH' cannot be read (Too many levels of symbolic links); check the disk or copy the file elsewhere.");
}

TEST(StoreCheck, NamesAFileThatMayNotBeRead) {
  const TestFolder folder;
  makeStore(folder / "sms.db", messagesSchema(17));
  ::chmod((folder / "sms.db").c_str(), 0);
  const testing::AsOrdinaryUser user;
  EXPECT_EQ(verdict(folder / "sms.db"),
            "'PATH' may not be read (Permission denied); change its permissions or run as a user who may read it.");
}

TEST(StoreCheck, NamesAWalThatMayNotBeRead) {
  const TestFolder folder;
  makeWalStore(folder / "sms.db", messagesSchema(17));
  ::chmod((folder / "sms.db-wal").c_str(), 0);
  const testing::AsOrdinaryUser user;
  EXPECT_EQ(verdict(folder / "sms.db"),
            "'PATH' cannot be copied into a private folder (Permission denied); check that it and the files beside it "
            "may be read.");
}

TEST(StoreCheck, NamesAFolder) {
  const TestFolder folder;
  const std::string path = folder.folder("sms.db");
  EXPECT_EQ(verdict(path), "'PATH' is a folder, not a store; give the file itself, such as sms.db.");
}

TEST(StoreCheck, NamesAPipeWithoutWaitingForIt) {
  const TestFolder folder;
  ASSERT_EQ(::mkfifo((folder / "sms.db").c_str(), 0600), 0);
  EXPECT_EQ(verdict(folder / "sms.db"), "'PATH' is not an ordinary file; give the store itself, such as sms.db.");
}

TEST(StoreCheck, NamesAnEmptyFile) {
  EXPECT_EQ(verdictOnBytes(""), std::string("'PATH' is empty (0 bytes)") + kCopyAgain);
}

TEST(StoreCheck, NamesFilesOfOtherKinds) {
  const std::string text = "'PATH' is a text file, not a database; give the store itself, such as sms.db.";
  EXPECT_EQ(verdictOnBytes("Dear reader,\nthis is not a store.\n"), text);
  EXPECT_EQ(verdictOnBytes("Grüße\r\n\tan alle"), text);
  EXPECT_EQ(verdictOnBytes(std::string("\xFF\xFEh\0i\0", 6)), text);
  EXPECT_EQ(verdictOnBytes("SQLite format 2\n"), text);
  EXPECT_EQ(verdictOnBytes("PK\x03\x04rest"),
            "'PATH' is a packed archive, not a database; unpack it and give the file inside.");
  EXPECT_EQ(verdictOnBytes("bplist00\x01"),
            "'PATH' is a property list, not a database; give the store itself, such as sms.db.");
  EXPECT_EQ(verdictOnBytes(std::string(5000, '\0')),
            std::string("'PATH' holds only zeros where a database should start") + kCopyAgain);
  EXPECT_EQ(verdictOnBytes("\x01\x02\x03\x04\x05 some other format"),
            std::string("'PATH' is not an SQLite database, or its start is damaged") + kCopyAgain);
}

TEST(StoreCheck, NamesAFileThatLooksEncrypted) {
  std::mt19937 random(11);
  std::string bytes(8192, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  EXPECT_EQ(verdictOnBytes(bytes),
            "'PATH' looks encrypted or damaged; a file of an encrypted backup must be decrypted first, otherwise copy "
            "it again from the device.");
}

TEST(StoreCheck, NamesATruncatedFile) {
  const std::string whole = storeBytes();
  const std::string size = std::to_string(whole.size());
  EXPECT_EQ(verdictOnBytes(whole.substr(0, whole.size() - 1)),
            "'PATH' is cut off: it has " + std::to_string(whole.size() - 1) + " of " + size + " bytes" + kCopyAgain);
  EXPECT_EQ(verdictOnBytes(whole.substr(0, 4096)), "'PATH' is cut off: it has 4096 of " + size + " bytes" + kCopyAgain);
  EXPECT_EQ(verdictOnBytes(whole.substr(0, 1000)), "'PATH' is cut off: it has 1000 of " + size + " bytes" + kCopyAgain);
  EXPECT_EQ(verdictOnBytes(whole.substr(0, 50)), std::string("'PATH' is cut off after 50 bytes") + kCopyAgain);
  EXPECT_EQ(verdictOnBytes(whole.substr(0, 10)), std::string("'PATH' is cut off after 10 bytes") + kCopyAgain);
}

TEST(StoreCheck, SurvivesEveryTruncation) {
  const std::string whole = storeBytes();
  for (std::size_t length = 0; length < whole.size(); length += 509) {
    EXPECT_NE(verdictOnBytes(whole.substr(0, length)), "") << length;
  }
}

TEST(StoreCheck, TrustsNoPageCountOfAnOldWriter) {
  // Old versions leave the page count alone; the counter that vouches for it then differs.
  std::string bytes = storeBytes();
  bytes[28] = '\x7F';
  bytes[95] = static_cast<char>(bytes[95] + 1);
  EXPECT_EQ(verdictOnBytes(bytes), "");
}

// A store whose main file ends with two pages that `walSql`, which runs when the main file is complete, may put into
// the -wal again; then these two pages are cut off.
std::string verdictOnCutOffMainFile(const std::string& walSql) {
  const TestFolder folder;
  const std::string path = folder / "sms.db";
  {
    const TestFolder workshop;
    const sqlite::Connection connection = testing::openForWriting(workshop / "db");
    testing::run(connection, "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0; " + messagesSchema(17) +
                                 "CREATE TABLE filler (a); INSERT INTO filler VALUES (zeroblob(100000))");
    testing::run(connection, "PRAGMA wal_checkpoint(TRUNCATE); " + walSql);
    for (const char* suffix : {"", "-wal"}) fs::copy_file((workshop / "db") + suffix, path + suffix);
  }
  fs::resize_file(path, fs::file_size(path) - 8192);
  return verdict(path);
}

TEST(StoreCheck, FindsAMainFileCutOffUnderItsWal) {
  EXPECT_EQ(verdictOnCutOffMainFile("INSERT INTO chat(guid) VALUES ('x')").substr(0, 26), "'PATH' is cut off: it has ");
}

TEST(StoreCheck, AcceptsAShortMainFileWhoseEndStandsInTheWal) {
  // As when the device stopped while it was moving pages from the -wal into the main file.
  EXPECT_EQ(verdictOnCutOffMainFile("UPDATE filler SET a = randomblob(100000)"), "");
}

TEST(StoreCheck, NamesADamagedListOfTables) {
  std::string bytes = storeBytes();
  const std::size_t at = bytes.find("CREATE TABLE message (");
  ASSERT_NE(at, std::string::npos);
  bytes.replace(at, 12, "CREATX TABLE");
  EXPECT_EQ(verdictOnBytes(bytes).substr(0, 55), "'PATH' is damaged: its list of tables cannot be read (m");
  std::string page = storeBytes();
  page[100] = '\x33';
  EXPECT_EQ(verdictOnBytes(page),
            std::string("'PATH' is damaged: its list of tables cannot be read (database disk image is malformed)") +
                kCopyAgain);
  std::string header = storeBytes();
  header[17] = '\x07';
  EXPECT_EQ(verdictOnBytes(header), std::string("'PATH' is damaged: its header is not valid") + kCopyAgain);
}

TEST(StoreCheck, SurvivesDamageAnywhereInTheFirstPages) {
  const std::string whole = storeBytes();
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    std::string bytes = whole;
    for (int i = 0; i < 20; ++i) bytes[random() % 8192] = static_cast<char>(random());
    const std::string sentence = verdictOnBytes(bytes);
    EXPECT_EQ(sentence.find('\n'), std::string::npos);
  }
}

TEST(StoreCheck, NamesADatabaseWithoutTables) {
  EXPECT_EQ(verdictOnSql("PRAGMA user_version=1"), std::string("'PATH' is a database without any tables") + kCopyAgain);
}

TEST(StoreCheck, AsksForTheWalThatWasNotCopied) {
  const TestFolder folder;
  makeWalStore(folder / "sms.db", messagesSchema(17));
  EXPECT_EQ(verdict(folder / "sms.db"), "");
  fs::remove(folder / "sms.db-wal");
  EXPECT_EQ(verdict(folder / "sms.db"),
            "'PATH' is a database without any tables; its content may stand in the file 'PATH-wal', which is missing: "
            "copy that file beside it.");
}

TEST(StoreCheck, NamesAForeignDatabase) {
  EXPECT_EQ(verdictOnSql("CREATE TABLE ABPerson (First TEXT)"),
            "'PATH' is a database but not a Messages store: it has no table 'message'; check the path.");
  EXPECT_EQ(verdictOnSql("CREATE VIEW message AS SELECT 1 AS guid; CREATE TABLE x (a)"),
            "'PATH' is a database but not a Messages store: it has no table 'message'; check the path.");
}

TEST(StoreCheck, NamesEachMissingTable) {
  for (const std::string table : {"message", "chat", "handle", "chat_message_join"}) {
    EXPECT_EQ(verdictOnSql(messagesSchema(14) + "DROP TABLE " + table),
              "'PATH' is a database but not a Messages store: it has no table '" + table + "'; check the path.");
  }
}

TEST(StoreCheck, NamesEachMissingColumn) {
  const std::vector<std::pair<std::string, std::string>> columns = {
      {"message", "date"}, {"chat", "guid"}, {"handle", "id"}, {"chat_message_join", "message_id"}};
  for (const auto& [table, column] : columns) {
    EXPECT_EQ(verdictOnSql(messagesSchema(14) + "ALTER TABLE " + table + " RENAME COLUMN " + column + " TO other"),
              "'PATH' is not a Messages store that can be read: its table '" + table + "' has no column '" + column +
                  "'; check that it comes from an iPhone, iPad or Mac.");
  }
}

TEST(StoreCheck, NamesAStoreThatIsTooOld) {
  EXPECT_EQ(verdictOnSql("CREATE TABLE message (ROWID INTEGER PRIMARY KEY, address TEXT, date INTEGER, text TEXT);"
                         "CREATE TABLE msg_group (ROWID INTEGER PRIMARY KEY); CREATE TABLE group_member (a)"),
            "'PATH' is a Messages store of iOS 5 or earlier, which cannot be read; stores of iOS 6 and later can.");
}

TEST(StoreCheck, ChecksStoresOfOtherKindsToo) {
  const TestFolder folder;
  makeStore(folder / "AddressBook.sqlitedb", "CREATE TABLE ABPerson (First TEXT)");
  const auto snapshot = StoreSnapshot::take(folder / "AddressBook.sqlitedb");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  const StoreKind contacts = {"a contacts store", {{"ABPerson", {"First"}}}};
  EXPECT_FALSE(checkStore(connect(snapshot.value()).get(), snapshot.value(), contacts));
  const StoreKind more = {"a contacts store", {{"ABPerson", {"First"}}, {"ABMultiValue", {}}}};
  const auto problem = checkStore(connect(snapshot.value()).get(), snapshot.value(), more);
  ASSERT_TRUE(problem);
  EXPECT_EQ(problem->sentence, "'" + (folder / "AddressBook.sqlitedb") +
                                   "' is a database but not a contacts store: it has no table 'ABMultiValue'; check "
                                   "the path.");
}

TEST(StoreColumns, KnowsTablesAndColumnsWithoutRegardToCase) {
  const TestFolder folder;
  makeStore(folder / "db", "CREATE TABLE Message (Guid TEXT, \"odd name\" INTEGER); CREATE VIEW v AS SELECT 1 AS a");
  const auto snapshot = StoreSnapshot::take(folder / "db");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  const sqlite::Connection connection = connect(snapshot.value());
  testing::run(connection, "CREATE TEMP VIEW message AS SELECT 1 AS other; CREATE TEMP TABLE mine (a)");
  StoreColumns columns(connection.get());
  EXPECT_TRUE(columns.hasAnyTable());
  EXPECT_TRUE(columns.has("message"));
  EXPECT_TRUE(columns.has("MESSAGE", "guid"));
  EXPECT_TRUE(columns.has("message", "odd name"));
  EXPECT_FALSE(columns.has("message", "other")) << "that is the temporary view's";
  EXPECT_FALSE(columns.has("mine"));
  EXPECT_FALSE(columns.has("v"));
  EXPECT_FALSE(columns.has("nothing", "guid"));
}

}  // namespace
}  // namespace chatsum::device
