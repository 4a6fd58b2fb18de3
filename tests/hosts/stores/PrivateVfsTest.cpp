#include "hosts/device/stores/PrivateVfs.h"

#include <gtest/gtest.h>

#include "hosts/device/stores/SuperJournal.h"
#include "tests/hosts/stores/StoreFixtures.h"
#include "tests/support/HostileJournal.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using testing::makeStore;
using testing::readFile;
using testing::TestFolder;
using testing::writeFile;

const std::string kTwoRows = "CREATE TABLE t (a); INSERT INTO t VALUES (1), (2)";

sqlite::Connection openIn(const PrivateVfs& vfs, const std::string& path, int expected = SQLITE_OK) {
  sqlite3* handle = nullptr;
  EXPECT_EQ(sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, vfs.name()), expected);
  return sqlite::Connection(handle);
}

TEST(PrivateVfs, FailsRatherThanDeleteWhatAJournalNames) {
  const TestFolder folder;
  makeStore(folder / "store", kTwoRows);
  writeFile(folder / "victim", "a letter");
  ASSERT_EQ(test::putHostileJournal(folder / "store", folder / "victim"), "");
  const PrivateVfs vfs(folder / "store");
  const sqlite::Connection connection = openIn(vfs, folder / "store");
  EXPECT_FALSE(connection.execute("SELECT * FROM t"));
  EXPECT_EQ(readFile(folder / "victim"), "a letter");
}

TEST(PrivateVfs, OpensNoOtherFile) {
  const TestFolder folder;
  makeStore(folder / "store", kTwoRows);
  makeStore(folder / "other", kTwoRows);
  const PrivateVfs vfs(folder / "store");
  openIn(vfs, folder / "other", SQLITE_CANTOPEN);
  const sqlite::Connection connection = openIn(vfs, folder / "store");
  EXPECT_FALSE(connection.execute("ATTACH '" + (folder / "other") + "' AS other"));
  EXPECT_FALSE(connection.execute("ATTACH '" + (folder / "new") + "' AS other"));
  testing::run(connection, "PRAGMA temp_store=FILE; CREATE TEMP TABLE own (a); PRAGMA temp.cache_size=1");
  EXPECT_FALSE(connection.execute("INSERT INTO own SELECT zeroblob(1000000)")) << "a file without a name";
  EXPECT_FALSE(fs::exists(folder / "new"));
}

TEST(PrivateVfs, ReadsAndChangesItsOwnDatabaseInEitherMode) {
  for (const std::string mode : {"WAL", "DELETE"}) {
    const TestFolder folder;
    makeStore(folder / "store", kTwoRows);
    const PrivateVfs vfs(folder / "store");
    const sqlite::Connection connection = openIn(vfs, folder / "store");
    testing::run(connection, "PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=" + mode);
    testing::run(connection, "INSERT INTO t VALUES (4)");
    EXPECT_TRUE(fs::exists((folder / "store") + "-wal") == (mode == "WAL"));
    EXPECT_EQ(testing::value(connection, "SELECT sum(a) FROM t"), "7");
  }
}

TEST(PrivateVfs, IsUnknownWhenItIsGone) {
  const TestFolder folder;
  std::string name;
  {
    const PrivateVfs vfs(folder / "store");
    name = vfs.name();
    EXPECT_NE(sqlite3_vfs_find(name.c_str()), nullptr);
  }
  EXPECT_EQ(sqlite3_vfs_find(name.c_str()), nullptr);
}

TEST(SuperJournal, LeavesJournalsThatNameNothingAsTheyAre) {
  const TestFolder folder;
  EXPECT_EQ(dropSuperJournal(folder / "missing"), 0);
  const std::string magic = "\xD9\xD5\x05\xF9\x20\xA1\x63\xD7";
  for (const std::string& bytes : {std::string(), std::string("short"), magic + std::string(512, '\1')}) {
    writeFile(folder / "journal", bytes);
    EXPECT_EQ(dropSuperJournal(folder / "journal"), 0);
    EXPECT_EQ(readFile(folder / "journal"), bytes);
  }
  writeFile(folder / "journal", magic + "name" + magic);
  EXPECT_EQ(dropSuperJournal(folder / "journal"), 0);
  EXPECT_EQ(readFile(folder / "journal"), magic + "name" + std::string(8, '\0'));
  EXPECT_EQ(dropSuperJournal(folder.path().string()), EISDIR);
}

}  // namespace
}  // namespace chatsum::device
