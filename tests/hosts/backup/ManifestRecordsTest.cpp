#include "hosts/device/backup/ManifestRecords.h"

#include <gtest/gtest.h>

#include "tests/hosts/backup/BackupFixture.h"

namespace chatsum::device {
namespace {

using test::BackupEntry;

class ManifestRecordsTest : public testing::BackupTest {
 protected:
  [[nodiscard]] std::string list(const test::BackupOptions& options = {}) const {
    test::BackupOptions flat = options;
    flat.isFlat = true;
    const auto writer = startBackup(flat);
    writer->add({.domain = testing::kHome, .path = "Library/l", .content = "/etc", .kind = BackupEntry::Kind::kLink});
    writer->add({.domain = "AppDomain-com.example.app", .path = "Documents/x", .content = "x"});
    writer->add({.domain = testing::kMedia, .path = "../../../../etc/passwd", .content = "mine"});
    finish(*writer);
    return testing::bytesOf(backup() / "Manifest.mbdb");
  }
};

TEST_F(ManifestRecordsTest, FindsFilesFoldersAndLinks) {
  const ManifestRecords records(list(encrypted()));
  EXPECT_TRUE(records.isWhole());
  const auto store = records.find("HomeDomain", testing::kMessagesPath);
  ASSERT_TRUE(store.file);
  EXPECT_EQ(store.file->name, "HomeDomain-Library/SMS/sms.db");
  EXPECT_EQ(store.file->id, "3d0d7e5fb2ce288813306e4d4636395e047a3d28");
  EXPECT_EQ(store.file->size, databaseWith("hello").size());
  EXPECT_EQ(store.file->protectionClass, 3U);
  EXPECT_EQ(store.file->wrappedKey.size(), 40U);
  EXPECT_EQ(records.find("HomeDomain", "Library").file->kind, BackupFile::Kind::kFolder);
  EXPECT_EQ(records.find("HomeDomain", "Library/l").file->kind, BackupFile::Kind::kLink);
  EXPECT_FALSE(records.find("HomeDomain", "Library/SMS").file);
  EXPECT_TRUE(records.find("HomeDomain", "Library/SMS").isReadable);
}

TEST_F(ManifestRecordsTest, HasNoKeysInAPlainBackup) {
  EXPECT_EQ(ManifestRecords(list()).find("HomeDomain", testing::kMessagesPath).file->wrappedKey, "");
}

TEST_F(ManifestRecordsTest, TakesAPathForANameOnly) {
  const ManifestRecords records(list());
  const auto answer = records.find("MediaDomain", "../../../../etc/passwd");
  ASSERT_TRUE(answer.file);
  EXPECT_TRUE(isFileId(answer.file->id));
}

TEST_F(ManifestRecordsTest, StopsWhereItIsCut) {
  const std::string bytes = list();
  std::size_t wholes = 0;
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const ManifestRecords records(std::string_view(bytes).substr(0, length));
    if (records.isWhole()) {
      ++wholes;
      continue;
    }
    const auto missing = records.find("HomeDomain", "nothing");
    EXPECT_FALSE(missing.file);
    EXPECT_FALSE(missing.isReadable);
  }
  EXPECT_EQ(wholes, 6U);  // behind the head and each record but the last
}

TEST_F(ManifestRecordsTest, BelievesNoLength) {
  const std::string head("mbdb\x05\x00", 6);
  const std::vector<std::string> lists = {
      "", "mbdb", "mbdx\x05", "SQLite format 3", head + "\xFF",
      head + std::string("\xFF\xFE"
                         "abc",
                         5),
      head + std::string(500, '\xFE'), head + std::string("\x00\x0AHome", 6),
      // A record whose properties never come.
      head + std::string(5, '\0') + std::string(5, '\0') + std::string(38, '\0') + '\xFF' + '\xFF'};
  for (const std::string& bytes : lists) {
    const ManifestRecords records(bytes);
    EXPECT_FALSE(records.isWhole()) << test::hexOf(bytes.substr(0, 40));
    EXPECT_TRUE(records.isEmpty());
  }
  EXPECT_TRUE(ManifestRecords(head).isWhole());
}

}  // namespace
}  // namespace chatsum::device
