#include "hosts/device/stores/StoreSnapshot.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <thread>

#include "hosts/device/stores/FileCopy.h"
#include "tests/hosts/stores/StoreFixtures.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using testing::connect;
using testing::everyFile;
using testing::makeInterruptedStore;
using testing::makeStore;
using testing::makeWalStore;
using testing::rows;
using testing::TestFolder;
using testing::value;
using testing::writeFile;

const std::string kTwoRows = "CREATE TABLE t (a); INSERT INTO t VALUES (1), (2)";
const std::string kSum = "SELECT sum(a) FROM t";

StoreSnapshot::Options inFolder(const TestFolder& folder) {
  StoreSnapshot::Options options;
  options.temporaryParent = folder.path().string();
  return options;
}

TEST(StoreSnapshot, ReadsAMainFileThatStandsAloneWhereItIs) {
  const TestFolder source;
  const TestFolder temporary;
  makeStore(source / "sms.db", kTwoRows);
  const auto before = everyFile(source.path());
  {
    const auto snapshot = StoreSnapshot::take(source / "sms.db", inFolder(temporary));
    ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
    EXPECT_FALSE(snapshot.value().isCopy());
    EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
    EXPECT_TRUE(everyFile(temporary.path()).empty());
    EXPECT_EQ(everyFile(source.path()), before);
    EXPECT_TRUE(snapshot.value().sourceIsUnchanged());
  }
  EXPECT_EQ(everyFile(source.path()), before);
}

TEST(StoreSnapshot, ReadsRowsThatStandOnlyInTheWal) {
  const TestFolder source;
  const TestFolder temporary;
  makeWalStore(source / "sms.db", kTwoRows);
  EXPECT_EQ(fs::file_size(source / "sms.db"), 4096U) << "the main file must not have the table";
  const auto before = everyFile(source.path());
  EXPECT_EQ(before.size(), 3U);
  {
    const auto snapshot = StoreSnapshot::take(source / "sms.db", inFolder(temporary));
    ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
    EXPECT_TRUE(snapshot.value().isCopy());
    EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
    EXPECT_TRUE(snapshot.value().sourceIsUnchanged());
  }
  EXPECT_EQ(everyFile(source.path()), before);
  EXPECT_TRUE(everyFile(temporary.path()).empty()) << "the copy goes with the snapshot";
}

TEST(StoreSnapshot, NeedsNoSharedMemoryFileToReadTheWal) {
  const TestFolder source;
  makeWalStore(source / "sms.db", kTwoRows);
  fs::remove(source / "sms.db-shm");
  const auto snapshot = StoreSnapshot::take(source / "sms.db");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
  EXPECT_FALSE(fs::exists(source / "sms.db-shm"));
}

TEST(StoreSnapshot, IgnoresWhatAWalDoesNotCommit) {
  const TestFolder source;
  makeWalStore(source / "sms.db", kTwoRows + "; INSERT INTO t VALUES (4)");
  // Half of the last frame is missing.
  fs::resize_file(source / "sms.db-wal", fs::file_size(source / "sms.db-wal") - 2000);
  const auto snapshot = StoreSnapshot::take(source / "sms.db");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
}

TEST(StoreSnapshot, CopiesNothingForAWalWithoutRows) {
  const TestFolder source;
  makeStore(source / "sms.db", "PRAGMA journal_mode=WAL; " + kTwoRows);
  EXPECT_TRUE(usesWal(source / "sms.db"));
  for (const std::string& wal : {std::string(), std::string(32, '\x01')}) {
    writeFile(source / "sms.db-wal", wal);
    const auto before = everyFile(source.path());
    const auto snapshot = StoreSnapshot::take(source / "sms.db");
    ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
    EXPECT_FALSE(snapshot.value().isCopy());
    EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
    EXPECT_EQ(everyFile(source.path()), before);
  }
}

TEST(StoreSnapshot, RollsAnInterruptedChangeBackInItsCopy) {
  const TestFolder source;
  makeInterruptedStore(source / "sms.db", kTwoRows, "UPDATE t SET a = 100");
  const auto before = everyFile(source.path());
  {
    const auto snapshot = StoreSnapshot::take(source / "sms.db");
    ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
    EXPECT_TRUE(snapshot.value().isCopy());
    EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
  }
  EXPECT_EQ(everyFile(source.path()), before);
}

TEST(StoreSnapshot, CopiesNothingForAFinishedJournal) {
  const TestFolder source;
  makeStore(source / "sms.db", "PRAGMA journal_mode=PERSIST; " + kTwoRows);
  EXPECT_GT(fs::file_size(source / "sms.db-journal"), 0U);
  const auto snapshot = StoreSnapshot::take(source / "sms.db");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  EXPECT_FALSE(snapshot.value().isCopy());
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
}

TEST(StoreSnapshot, NotesTheBytesThatItReads) {
  for (const bool inWal : {false, true}) {
    const TestFolder source;
    (inWal ? makeWalStore : makeStore)(source / "sms.db", kTwoRows);
    StoreLocation location = locationOf(source / "sms.db");
    location.digests = std::make_shared<ReadDigests>();
    const std::string bytes = testing::readFile(source / "sms.db"), wal = testing::readFile(source / "sms.db-wal");
    const auto snapshot = StoreSnapshot::take(location);
    ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
    EXPECT_TRUE(snapshot.value().isCopy()) << "what is read must not change any more";
    writeFile(source / "sms.db", "something else");
    EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
    const auto* const main = location.digests->find(source / "sms.db");
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(main->digest, digestOf(bytes));
    const auto* const beside = location.digests->find(source / "sms.db-wal");
    ASSERT_NE(beside, nullptr);
    EXPECT_EQ(beside->digest, inWal ? std::optional(digestOf(wal)) : std::nullopt);
    ASSERT_NE(location.digests->find(source / "sms.db-journal"), nullptr);
    EXPECT_EQ(location.digests->find(source / "sms.db-journal")->digest, std::nullopt);
  }
}

TEST(StoreSnapshot, LeavesASourceThatCannotBeWrittenAsItIs) {
  for (const bool inWal : {false, true}) {
    const TestFolder source;
    const TestFolder temporary;
    testing::giveToOrdinaryUser(temporary.path().string());
    (inWal ? makeWalStore : makeStore)(source / "sms.db", kTwoRows);
    for (const auto& [path, bytes] : everyFile(source.path())) ::chmod(path.c_str(), 0444);
    ::chmod(source.path().c_str(), 0555);
    const auto before = everyFile(source.path());
    {
      const testing::AsOrdinaryUser user;
      const auto snapshot = StoreSnapshot::take(source / "sms.db", inFolder(temporary));
      ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
      EXPECT_EQ(snapshot.value().isCopy(), inWal);
      EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
    }
    EXPECT_EQ(everyFile(source.path()), before);
    ::chmod(source.path().c_str(), 0755);
  }
}

TEST(StoreSnapshot, OutlivesASourceThatWasCopied) {
  const TestFolder source;
  makeWalStore(source / "sms.db", kTwoRows);
  const auto snapshot = StoreSnapshot::take(source / "sms.db");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove((source / "sms.db") + suffix);
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
  EXPECT_FALSE(snapshot.value().sourceIsUnchanged());
}

TEST(StoreSnapshot, KeepsReadingADeletedSourceOnOpenConnectionsOnly) {
  const TestFolder source;
  makeStore(source / "sms.db", kTwoRows);
  const auto snapshot = StoreSnapshot::take(source / "sms.db");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  const sqlite::Connection open = connect(snapshot.value());
  fs::remove(source / "sms.db");
  EXPECT_EQ(value(open, kSum), "3");
  EXPECT_FALSE(snapshot.value().sourceIsUnchanged());
  sqlite3* handle = nullptr;
  EXPECT_EQ(snapshot.value().open(&handle), SQLITE_CANTOPEN);
  const sqlite::Connection late(handle);
  EXPECT_EQ(late.lastError(), "unable to open database file");
  EXPECT_FALSE(fs::exists(source / "sms.db"));
}

TEST(StoreSnapshot, ServesSeveralThreadsAtOnce) {
  for (const bool inWal : {false, true}) {
    const TestFolder source;
    (inWal ? makeWalStore : makeStore)(source / "sms.db",
                                       "CREATE TABLE t (a); WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 "
                                       "FROM n WHERE i < 20000) INSERT INTO t SELECT i FROM n");
    const auto snapshot = StoreSnapshot::take(source / "sms.db");
    ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
    std::vector<std::string> sums(3);
    std::vector<std::thread> readers;
    for (std::string& sum : sums) {
      readers.emplace_back([&snapshot, &sum] {
        for (int i = 0; i < 5; ++i) sum = value(connect(snapshot.value()), kSum);
      });
    }
    for (std::thread& reader : readers) reader.join();
    EXPECT_EQ(sums, std::vector<std::string>(3, "200010000"));
  }
}

TEST(StoreSnapshot, ReadsStoresWhateverTheirPathHolds) {
  for (const std::string name : {"with space", "what?mode=rwc", "a#b", "50%25", "%3f", "it's \"quoted\"", "Grüße",
                                 "日本", "a&b=c", "back\\slash", "new\nline", "file:x", "\xFF\xFE"}) {
    for (const bool inWal : {false, true}) {
      const TestFolder source;
      const std::string path = source.folder(name) + "/" + name + ".db";
      (inWal ? makeWalStore : makeStore)(path, kTwoRows);
      const auto before = everyFile(source.path());
      const auto snapshot = StoreSnapshot::take(path);
      ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
      EXPECT_EQ(value(connect(snapshot.value()), kSum), "3") << name;
      EXPECT_EQ(everyFile(source.path()), before) << name;
    }
  }
}

TEST(StoreSnapshot, ReadsAStoreBehindAVeryLongPath) {
  const TestFolder source;
  std::string folder;
  for (int i = 0; i < 6; ++i) folder += std::string(99, 'x') + "/";
  makeStore(source / "sms.db", kTwoRows);
  const std::string path = source.folder(folder) + "sms.db";
  fs::rename(source / "sms.db", path);
  const auto snapshot = StoreSnapshot::take(path);
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
}

TEST(StoreSnapshot, ReadsARelativePath) {
  const TestFolder source;
  makeStore(source / "sms.db", kTwoRows);
  fs::current_path(source.path());
  const auto snapshot = StoreSnapshot::take("sms.db");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
  fs::current_path("/");
}

TEST(StoreSnapshot, FollowsALinkToTheStoreAndItsWal) {
  const TestFolder source;
  makeWalStore(source / "sms.db", kTwoRows);
  const std::string elsewhere = source.folder("links");
  fs::create_symlink(source / "sms.db", elsewhere + "/link.db");
  const auto before = everyFile(source.path());
  const auto snapshot = StoreSnapshot::take(elsewhere + "/link.db");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
  EXPECT_EQ(everyFile(source.path()), before);
}

TEST(StoreSnapshot, CopiesAgainWhenTheStoreChangesMeanwhile) {
  const TestFolder source;
  const TestFolder temporary;
  makeWalStore(source / "sms.db", kTwoRows);
  StoreSnapshot::Options options = inFolder(temporary);
  int tries = 0;
  options.afterMainCopied = [&](int attempt) {
    tries = attempt;
    if (attempt > 1) return;
    for (const char* suffix : {"", "-wal", "-shm"}) fs::remove((source / "sms.db") + suffix);
    makeWalStore(source / "sms.db", kTwoRows + "; INSERT INTO t VALUES (40)");
  };
  const auto snapshot = StoreSnapshot::take(source / "sms.db", options);
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  EXPECT_EQ(tries, 2);
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "43");
  EXPECT_TRUE(snapshot.value().sourceIsUnchanged());
}

TEST(StoreSnapshot, GivesUpOnAStoreThatKeepsChanging) {
  const TestFolder source;
  const TestFolder temporary;
  makeWalStore(source / "sms.db", kTwoRows);
  StoreSnapshot::Options options = inFolder(temporary);
  int tries = 0;
  options.afterMainCopied = [&](int attempt) {
    tries = attempt;
    fs::last_write_time(source / "sms.db", fs::file_time_type::clock::now() + std::chrono::seconds(attempt));
  };
  const auto snapshot = StoreSnapshot::take(source / "sms.db", options);
  ASSERT_FALSE(snapshot);
  EXPECT_EQ(tries, 3);
  EXPECT_EQ(snapshot.problem().sentence,
            "'" + (source / "sms.db") +
                "' keeps changing while it is copied; quit the programs that use it, or copy it yourself and give the "
                "copy.");
  EXPECT_TRUE(everyFile(temporary.path()).empty());
}

TEST(StoreSnapshot, AcceptsRowsThatAreOnlyAddedWhileItIsCopied) {
  const TestFolder source;
  const std::string path = source / "chat.db";
  const sqlite::Connection writer = testing::openForWriting(path);
  testing::run(writer, "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0; " + kTwoRows);
  StoreSnapshot::Options options;
  options.afterMainCopied = [&](int) { testing::run(writer, "INSERT INTO t VALUES (10)"); };
  const auto snapshot = StoreSnapshot::take(path, options);
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "33") << "three tries, each of which saw one row more";
}

TEST(StoreSnapshot, TriesADamagedCopyThreeTimes) {
  const TestFolder source;
  makeWalStore(source / "sms.db", kTwoRows);
  // The -wal is whole, but what it says about the tables is not.
  writeFile(source / "sms.db-wal", std::string(4096, '\x07'));
  std::string main = testing::readFile(source / "sms.db");
  main[100] = '\x33';  // the kind of the first page
  writeFile(source / "sms.db", main);
  int tries = 0;
  StoreSnapshot::Options options;
  options.afterMainCopied = [&tries](int attempt) { tries = attempt; };
  const auto snapshot = StoreSnapshot::take(source / "sms.db", options);
  ASSERT_FALSE(snapshot);
  EXPECT_EQ(tries, 3);
  EXPECT_EQ(snapshot.problem().sentence,
            "'" + (source / "sms.db") +
                "' is damaged: its list of tables cannot be read (database disk image is malformed); copy it again "
                "from the device or backup.");
}

TEST(StoreSnapshot, GivesAConnectionThatCannotWrite) {
  const TestFolder source;
  for (const bool inWal : {false, true}) {
    const std::string path = source / (inWal ? "wal.db" : "main.db");
    (inWal ? makeWalStore : makeStore)(path, kTwoRows);
    const auto snapshot = StoreSnapshot::take(path);
    ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
    const sqlite::Connection connection = connect(snapshot.value());
    EXPECT_FALSE(connection.execute("INSERT INTO t VALUES (9)"));
    EXPECT_FALSE(connection.execute("DROP TABLE t"));
    EXPECT_TRUE(connection.execute("CREATE TEMP TABLE own (a)"));
  }
}

TEST(StoreSnapshot, CanBeMovedWhileConnectionsAreOpen) {
  const TestFolder source;
  makeWalStore(source / "sms.db", kTwoRows);
  auto taken = StoreSnapshot::take(source / "sms.db");
  ASSERT_TRUE(taken) << taken.problem().sentence;
  const sqlite::Connection connection = connect(taken.value());
  const StoreSnapshot moved = std::move(taken.value());
  EXPECT_EQ(value(connection, kSum), "3");
  EXPECT_EQ(value(connect(moved), kSum), "3");
}

TEST(FileCopy, CopiesBytesAndRefusesWhatIsThere) {
  const TestFolder folder;
  const std::string bytes(300000, 'b');
  writeFile(folder / "from", bytes);
  EXPECT_EQ(copyFile(folder / "from", folder / "to"), 0);
  EXPECT_EQ(testing::readFile(folder / "to"), bytes);
  struct stat status {};
  ASSERT_EQ(::stat((folder / "to").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(copyFile(folder / "from", folder / "to"), EEXIST);
  EXPECT_EQ(copyFile(folder / "missing", folder / "other"), ENOENT);
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(copyFile(folder / "pipe", folder / "other"), EINVAL);
}

TEST(FileCopy, CopiesAcrossFileSystems) {
  if (!fs::is_directory("/dev/shm")) GTEST_SKIP() << "there is no second file system";
  const TestFolder folder;
  const std::string bytes(300000, 'c');
  writeFile(folder / "from", bytes);
  auto other = SnapshotFolder::create("/dev/shm");
  if (!other) GTEST_SKIP() << other.problem().sentence;
  EXPECT_EQ(copyFile(folder / "from", other.value().path() + "/to"), 0);
  EXPECT_EQ(testing::readFile(other.value().path() + "/to"), bytes);
}

}  // namespace
}  // namespace chatsum::device
