#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "hosts/device/stores/StoreSnapshot.h"
#include "tests/hosts/stores/StoreFixtures.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using testing::connect;
using testing::everyFile;
using testing::makeInterruptedStore;
using testing::makeStore;
using testing::makeWalStore;
using testing::TestFolder;
using testing::value;
using testing::writeFile;

const std::string kTwoRows = "CREATE TABLE t (a); INSERT INTO t VALUES (1), (2)";
const std::string kSum = "SELECT sum(a) FROM t";

/// A store whose files have names of no meaning to SQLite, as those of a backup.
class StoreLocationTest : public ::testing::Test {
 protected:
  /// Gives the files of `store` their meaningless names.
  void scatter() {
    fs::create_directory(source / "aa");
    for (const auto& [suffix, name] : names) {
      if (fs::exists(source / "store" + suffix)) fs::rename(source / "store" + suffix, source / name);
    }
  }
  [[nodiscard]] StoreLocation location() const {
    return {source / "aa/main", source / "beside", source / "memory", source / "journal", "sms.db of the backup"};
  }
  [[nodiscard]] StoreSnapshot::Options options() const {
    StoreSnapshot::Options answer;
    answer.temporaryParent = temporary.path().string();
    return answer;
  }

  const std::map<std::string, std::string> names = {
      {"", "aa/main"}, {"-wal", "beside"}, {"-shm", "memory"}, {"-journal", "journal"}};
  TestFolder source, temporary;
};

TEST_F(StoreLocationTest, ReadsRowsOfAWalUnderAnotherName) {
  makeWalStore(source / "store", kTwoRows);
  scatter();
  const auto before = everyFile(source.path());
  ASSERT_TRUE(before.contains(source / "beside"));
  {
    const auto snapshot = StoreSnapshot::take(location(), options());
    ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
    EXPECT_TRUE(snapshot.value().isCopy());
    EXPECT_EQ(snapshot.value().shownPath(), "sms.db of the backup");
    EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
    EXPECT_TRUE(snapshot.value().sourceIsUnchanged());
  }
  EXPECT_EQ(everyFile(source.path()), before);
  EXPECT_TRUE(everyFile(temporary.path()).empty());
}

TEST_F(StoreLocationTest, RollsAJournalUnderAnotherNameBack) {
  makeInterruptedStore(source / "store", kTwoRows, "UPDATE t SET a = 100");
  scatter();
  const auto snapshot = StoreSnapshot::take(location(), options());
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  EXPECT_TRUE(snapshot.value().isCopy());
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
}

TEST_F(StoreLocationTest, LeavesAloneWhatOnlyLooksAsIfItBelongedToTheMainFile) {
  makeStore(source / "store", kTwoRows);
  scatter();
  makeWalStore(source / "other", "CREATE TABLE t (a); INSERT INTO t VALUES (77)");
  fs::copy_file(source / "other-wal", source / "aa/main-wal");
  const auto snapshot = StoreSnapshot::take(location(), options());
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  EXPECT_FALSE(snapshot.value().isCopy());
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
}

TEST_F(StoreLocationTest, MayHaveNoFilesBesideItAtAll) {
  makeStore(source / "store", kTwoRows);
  scatter();
  const auto snapshot = StoreSnapshot::take({source / "aa/main", "", "", "", "sms.db of the backup"}, options());
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  EXPECT_EQ(value(connect(snapshot.value()), kSum), "3");
  EXPECT_TRUE(snapshot.value().sourceIsUnchanged());
}

TEST_F(StoreLocationTest, NoticesThatAWalUnderAnotherNameChanges) {
  makeWalStore(source / "store", kTwoRows);
  scatter();
  const auto snapshot = StoreSnapshot::take(location(), options());
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  std::this_thread::sleep_for(std::chrono::milliseconds(20));  // the clock of files is coarse
  writeFile(source / "beside", std::string(5000, 'x'));
  EXPECT_FALSE(snapshot.value().sourceIsUnchanged());
}

TEST_F(StoreLocationTest, NamesTheStoreAsItIsShown) {
  const auto missing = StoreSnapshot::take(location(), options());
  ASSERT_FALSE(missing);
  EXPECT_NE(missing.problem().sentence.find("'sms.db of the backup'"), std::string::npos) << missing.problem().sentence;
  makeStore(source / "store", kTwoRows);
  scatter();
  fs::resize_file(source / "aa/main", 4096);
  const auto cut = StoreSnapshot::take(location(), options());
  ASSERT_FALSE(cut);
  EXPECT_NE(cut.problem().sentence.find("'sms.db of the backup' is cut off"), std::string::npos)
      << cut.problem().sentence;
}

}  // namespace
}  // namespace chatsum::device
