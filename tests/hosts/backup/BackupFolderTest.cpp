#include "hosts/device/backup/BackupFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/hosts/backup/BackupFixture.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using testing::putBytes;

const std::string kId = "3d0d7e5fb2ce288813306e4d4636395e047a3d28";

class BackupFolderTest : public ::testing::Test {
 protected:
  [[nodiscard]] fs::path root() const { return fs::path(folder_.path()) / "backup"; }
  [[nodiscard]] BackupFolder open() const { return BackupFolder(root().string()); }
  platform::fake::TemporaryFolder folder_;
};

TEST_F(BackupFolderTest, ComputesTheIdsOfStores) {
  EXPECT_EQ(fileIdOf("HomeDomain", "Library/SMS/sms.db"), kId);
  EXPECT_EQ(fileIdOf("HomeDomain", "Library/SMS/sms.db-wal"), "cd47480f213dba9bc38ee792775d17e3f5a73a59");
  EXPECT_EQ(fileIdOf("HomeDomain", "Library/SMS/sms.db-shm"), "36ce215df2239f14660f11541cb64a3f790c95cd");
  EXPECT_EQ(fileIdOf("HomeDomain", "Library/AddressBook/AddressBook.sqlitedb"),
            "31bb7ba8914766d4ba40d6dfb6113c8b614be442");
  EXPECT_EQ(fileIdOf("HomeDomain", "Library/AddressBook/AddressBookImages.sqlitedb"),
            "cd6702cea29fe89cf280a76794405adb17f9a0ee");
  EXPECT_EQ(fileIdOf("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata"),
            "5a4935c78a5255723f707230a451d79c540d2741");
  EXPECT_EQ(fileIdOf("HomeDomain", "Library/CallHistoryDB/CallHistoryTemp.storedata"),
            "81b7fe4b60b1d80e04b158a642b68803d982987d");
  EXPECT_EQ(fileIdOf("WirelessDomain", "Library/CallHistory/call_history.db"),
            "2b2b0084a1bc3a5ac8c27afdf14afb42c61a19ca");
}

TEST_F(BackupFolderTest, TakesFortyDigitsForAnIdAndNothingElse) {
  EXPECT_TRUE(isFileId(kId));
  for (const std::string& text :
       {std::string(), kId.substr(1), kId + "0", std::string("../../../../../../../../../../etc/passwd.."),
        "/" + kId.substr(1), "g" + kId.substr(1), std::string(40, '\0')}) {
    EXPECT_FALSE(isFileId(text)) << text;
  }
}

TEST_F(BackupFolderTest, FindsFilesInTheFoldersOfTheirDigitsAndBesideTheLists) {
  putBytes(root() / kId, "flat");
  EXPECT_EQ(open().storedFile(kId), (root() / kId).string());
  putBytes(root() / "3d" / kId, "newer");
  EXPECT_EQ(open().storedFile(kId), (root() / "3d" / kId).string());
  EXPECT_EQ(open().storedFile(std::string(40, '0')), std::nullopt);
  EXPECT_EQ(open().storedFile("../backup/" + kId), std::nullopt);
}

TEST_F(BackupFolderTest, RefusesLinksFoldersAndPipes) {
  putBytes(root() / "Info.plist", "x");
  putBytes(fs::path(folder_.path()) / "outside" / kId, "secret");
  fs::create_symlink("../outside", root() / "3d");
  EXPECT_EQ(open().storedFile(kId), std::nullopt);
  fs::remove(root() / "3d");
  fs::create_directory(root() / "3d");
  fs::create_symlink("../../outside/" + kId, root() / "3d" / kId);
  fs::create_symlink("../outside/" + kId, root() / kId);
  EXPECT_EQ(open().storedFile(kId), std::nullopt);
  fs::remove(root() / kId);
  fs::create_directory(root() / kId);
  EXPECT_EQ(open().storedFile(kId), std::nullopt);
  fs::remove(root() / kId);
  ASSERT_EQ(::mkfifo((root() / kId).c_str(), 0600), 0);
  EXPECT_EQ(open().storedFile(kId), std::nullopt);
  fs::create_symlink(root() / "Info.plist", root() / "Status.plist");
  EXPECT_EQ(open().ownFile("Status.plist"), std::nullopt);
  EXPECT_EQ(open().readOwnFile("Status.plist", 100), std::nullopt);
  EXPECT_EQ(open().readOwnFile("Info.plist", 100), "x");
}

TEST_F(BackupFolderTest, ReadsNoMoreThanItMay) {
  putBytes(root() / "Info.plist", "0123456789");
  EXPECT_EQ(open().readOwnFile("Info.plist", 10), "0123456789");
  EXPECT_EQ(open().readOwnFile("Info.plist", 9), std::nullopt);
  EXPECT_EQ(open().startOfOwnFile("Info.plist", 4), "0123");
  EXPECT_EQ(open().startOfOwnFile("Info.plist", 100), "0123456789");
  EXPECT_EQ(open().startOfOwnFile("missing", 4), std::nullopt);
}

TEST_F(BackupFolderTest, FollowsALinkToTheBackupItself) {
  putBytes(root() / "Info.plist", "x");
  const fs::path link = fs::path(folder_.path()) / "link";
  fs::create_symlink("backup", link);
  EXPECT_EQ(BackupFolder(link.string() + "/").path(), root().string());
}

}  // namespace
}  // namespace chatsum::device
