#include "hosts/device/backup/BackupPlists.h"

#include <gtest/gtest.h>

#include "tests/hosts/backup/BackupFixture.h"
#include "tests/support/BinaryPropertyList.h"

namespace chatsum::device {
namespace {

using testing::putBytes;
namespace fs = std::filesystem;

class BackupPlistsTest : public testing::BackupTest {
 protected:
  [[nodiscard]] BackupPlists read() const { return BackupPlists::read(BackupFolder(backup().string())); }
  /// The only warning.
  [[nodiscard]] std::string warning() const {
    const BackupPlists lists = read();
    EXPECT_EQ(lists.facts.warnings.size(), 1U);
    return lists.facts.warnings.empty() ? "" : lists.facts.warnings[0];
  }
};

TEST_F(BackupPlistsTest, SaysWhichDeviceItIsInBothForms) {
  for (const bool isXml : {true, false}) {
    writeBackup({.isXml = isXml});
    const SourceFacts facts = read().facts;
    EXPECT_EQ(facts.kind, SourceKind::kBackup);
    EXPECT_EQ(facts.path, backup().string());
    EXPECT_FALSE(facts.isEncrypted);
    EXPECT_EQ(facts.deviceName, "Maya's iPhone");
    EXPECT_EQ(facts.productType, "iPhone14,5");
    EXPECT_EQ(facts.systemVersion, "17.2");
    EXPECT_EQ(facts.buildVersion, "21C62");
    EXPECT_EQ(facts.serialNumber, "SAMPLE000142");
    EXPECT_EQ(facts.deviceIdentifier, "00008110-000A1C2E3F4B5D6E");
    EXPECT_EQ(facts.phoneNumber, "+1 (555) 010-0142");
    ASSERT_TRUE(facts.date);
    EXPECT_EQ(facts.date->secondsSince1970, 1'735'722'000);
    EXPECT_TRUE(facts.warnings.empty()) << facts.warnings[0];
  }
}

TEST_F(BackupPlistsTest, HasTheKeysOfAnEncryptedBackup) {
  for (const bool isXml : {true, false}) {
    writeBackup({.password = testing::kPassword, .isXml = isXml});
    const BackupPlists lists = read();
    EXPECT_TRUE(lists.facts.isEncrypted);
    EXPECT_EQ(test::hexOf(lists.keyBag), testing::kKeyBag);
    EXPECT_EQ(test::hexOf(lists.manifestKey), testing::kManifestKey);
  }
}

TEST_F(BackupPlistsTest, WarnsOfABackupThatWasNotFinished) {
  writeBackup({.snapshotState = "uploading"});
  EXPECT_NE(warning().find("was not finished (its state is 'uploading')"), std::string::npos) << warning();
}

TEST_F(BackupPlistsTest, WarnsOfAMissingOrDamagedInfoAndAsksTheOtherLists) {
  writeBackup();
  putBytes(backup() / "Info.plist", "<?xml version=\"1.0\"?><plist><dict><key>Device");
  EXPECT_NE(warning().find("Info.plist' is damaged"), std::string::npos) << warning();
  fs::remove(backup() / "Info.plist");
  EXPECT_NE(warning().find("Info.plist' is missing"), std::string::npos) << warning();
  const SourceFacts facts = read().facts;
  EXPECT_EQ(facts.deviceName, "Maya's iPhone");
  EXPECT_EQ(facts.systemVersion, "17.2");
  EXPECT_EQ(facts.deviceIdentifier, "00008110-000A1C2E3F4B5D6E");
  EXPECT_EQ(facts.phoneNumber, "");
  ASSERT_TRUE(facts.date);
  EXPECT_EQ(facts.date->secondsSince1970, 1'735'722'000);
}

TEST_F(BackupPlistsTest, WarnsOfOtherListsThatAreMissing) {
  writeBackup();
  fs::remove(backup() / "Status.plist");
  EXPECT_NE(warning().find("Status.plist' is missing"), std::string::npos) << warning();
  fs::remove(backup() / "Manifest.plist");
  EXPECT_EQ(read().facts.warnings.size(), 2U);
  EXPECT_FALSE(read().facts.isEncrypted);
}

TEST_F(BackupPlistsTest, SurvivesListsThatGoInCirclesOrHoldOtherKinds) {
  writeBackup();
  test::BinaryPropertyList circle;
  const auto key = circle.text("Lockdown");
  const auto inside = circle.next();
  circle.dictionary({key}, {inside});
  putBytes(backup() / "Manifest.plist", circle.bytes(inside));
  test::BinaryPropertyList numbers;
  const auto name = numbers.text("Device Name"), date = numbers.text("Last Backup Date"), one = numbers.integer(1);
  putBytes(backup() / "Info.plist", numbers.bytes(numbers.dictionary({name, date}, {one, one})));
  const SourceFacts facts = read().facts;
  EXPECT_EQ(facts.deviceName, "");
  EXPECT_FALSE(facts.isEncrypted);
  ASSERT_TRUE(facts.date);  // that of Status.plist
}

TEST_F(BackupPlistsTest, FollowsNoLinkOutOfTheBackup) {
  writeBackup();
  fs::rename(backup() / "Info.plist", root() / "outside.plist");
  fs::create_symlink("../outside.plist", backup() / "Info.plist");
  EXPECT_EQ(read().facts.phoneNumber, "");
  EXPECT_NE(warning().find("Info.plist' is missing"), std::string::npos);
}

}  // namespace
}  // namespace chatsum::device
