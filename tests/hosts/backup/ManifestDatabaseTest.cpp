#include "hosts/device/backup/ManifestDatabase.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/hosts/backup/BackupFixture.h"
#include "tests/support/BinaryPropertyList.h"

namespace chatsum::device {
namespace {

using test::BackupEntry;

class ManifestDatabaseTest : public testing::BackupTest {
 protected:
  [[nodiscard]] std::string path() const { return (backup() / "Manifest.db").string(); }
  [[nodiscard]] std::unique_ptr<BackupManifest> openList() const {
    auto manifest = ManifestDatabase::open(locationOf(path()));
    EXPECT_TRUE(manifest) << manifest.problem().sentence;
    return manifest ? std::move(manifest.value()) : nullptr;
  }
  void change(const std::string& sql) const {
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open(path().c_str(), &handle), SQLITE_OK);
    const sqlite::Connection connection(handle);
    ASSERT_TRUE(connection.execute(sql)) << connection.lastError();
  }
};

TEST_F(ManifestDatabaseTest, FindsFilesFoldersAndLinks) {
  const auto writer = startBackup(encrypted());
  writer->add({.domain = testing::kHome, .path = "Library/link", .content = "/etc", .kind = BackupEntry::Kind::kLink});
  writer->add({.domain = testing::kHome, .path = "it's; DROP TABLE Files--\"", .content = "x", .protectionClass = 4});
  finish(*writer);
  // The list of this backup is encrypted; the same one is not in an older backup.
  auto old = encrypted();
  old.hasOldKeyBag = true;
  const auto again = startBackup(old);
  again->add({.domain = testing::kHome, .path = "Library/link", .content = "/etc", .kind = BackupEntry::Kind::kLink});
  again->add({.domain = testing::kHome, .path = "it's; DROP TABLE Files--\"", .content = "x", .protectionClass = 4});
  EXPECT_FALSE(ManifestDatabase::open(locationOf(path())));
  finish(*again);

  const auto list = openList();
  const auto store = list->find("HomeDomain", testing::kMessagesPath);
  ASSERT_TRUE(store.file);
  EXPECT_EQ(store.file->name, "HomeDomain-Library/SMS/sms.db");
  EXPECT_EQ(store.file->id, "3d0d7e5fb2ce288813306e4d4636395e047a3d28");
  EXPECT_EQ(store.file->kind, BackupFile::Kind::kFile);
  EXPECT_EQ(store.file->size, databaseWith("hello").size());
  EXPECT_EQ(store.file->protectionClass, 3U);
  EXPECT_EQ(store.file->wrappedKey.size(), 40U);
  EXPECT_EQ(list->find("HomeDomain", "Library").file->kind, BackupFile::Kind::kFolder);
  EXPECT_EQ(list->find("HomeDomain", "Library/link").file->kind, BackupFile::Kind::kLink);
  const auto quoted = list->find("HomeDomain", "it's; DROP TABLE Files--\"");
  ASSERT_TRUE(quoted.file);
  EXPECT_EQ(quoted.file->protectionClass, 4U);
  EXPECT_EQ(quoted.file->size, 1U);
}

TEST_F(ManifestDatabaseTest, FindsNothingElse) {
  writeBackup();
  const auto list = openList();
  for (const std::string& name : {std::string("Library/SMS/sms.d"), std::string("library/sms/SMS.DB"), std::string("%"),
                                  std::string("' OR 1=1--"), std::string("Library/SMS/sms.db\0", 19), std::string()}) {
    const auto answer = list->find("HomeDomain", name);
    EXPECT_FALSE(answer.file) << name;
    EXPECT_TRUE(answer.isReadable);
  }
  EXPECT_FALSE(list->find("MediaDomain", testing::kMessagesPath).file);
}

TEST_F(ManifestDatabaseTest, TakesNoPathForAnId) {
  writeBackup();
  for (const std::string id : {"../../../../../../../../../../etc/passwd.", "/etc/passwd", "", "3d0d7e5f"}) {
    change("UPDATE Files SET fileID = '" + id + "' WHERE relativePath = 'Library/SMS/sms.db'");
    const auto answer = openList()->find("HomeDomain", testing::kMessagesPath);
    EXPECT_FALSE(answer.file) << id;
    EXPECT_FALSE(answer.isReadable);
  }
}

TEST_F(ManifestDatabaseTest, DoesWithoutADescription) {
  writeBackup();
  test::BinaryPropertyList circle;
  const auto top = circle.text("$top"), root = circle.text("root"), objects = circle.text("$objects");
  const auto one = circle.raw(std::string("\x80\x01", 2)), key = circle.text("EncryptionKey");
  const auto loop = circle.dictionary({key}, {one});
  const auto items = circle.array({loop, loop});
  const auto place = circle.dictionary({root}, {one});
  const std::string archive = circle.bytes(circle.dictionary({top, objects}, {place, items}));
  for (const std::string& blob : {std::string("NULL"), std::string("x''"), std::string("x'62706c6973743030'"),
                                  "x'" + test::hexOf(archive) + "'", std::string("'text'"), std::string("7")}) {
    change("UPDATE Files SET file = " + blob);
    const auto answer = openList()->find("HomeDomain", testing::kMessagesPath);
    ASSERT_TRUE(answer.file) << blob;
    EXPECT_FALSE(answer.file->size);
    EXPECT_EQ(answer.file->wrappedKey, "");
  }
}

TEST_F(ManifestDatabaseTest, RefusesOtherDatabasesAndDamage) {
  writeBackup();
  change("ALTER TABLE Files RENAME COLUMN relativePath TO path");
  EXPECT_NE(ManifestDatabase::open(locationOf(path())).problem().sentence.find("no column 'relativePath'"),
            std::string::npos);
  change("DROP TABLE Files");
  EXPECT_NE(ManifestDatabase::open(locationOf(path())).problem().sentence.find("no table 'Files'"), std::string::npos);
  testing::putBytes(path(), "not a database at all");
  EXPECT_FALSE(ManifestDatabase::open(locationOf(path())));
}

TEST_F(ManifestDatabaseTest, SaysWhenItCannotTell) {
  const auto writer = startBackup();
  for (int i = 0; i < 500; ++i) {
    writer->add({.domain = "AppDomain", .path = "Documents/" + std::to_string(i), .content = "x", .isStored = false});
  }
  finish(*writer);
  std::string bytes = testing::bytesOf(path());
  for (std::size_t at = 4096 * 3; at < bytes.size(); ++at) bytes[at] = '\x55';
  testing::putBytes(path(), bytes);
  const auto manifest = ManifestDatabase::open(locationOf(path()));
  ASSERT_TRUE(manifest) << manifest.problem().sentence;
  EXPECT_FALSE(manifest.value()->find("AppDomain", "Documents/400").isReadable);
}

TEST_F(ManifestDatabaseTest, AnswersManyThreads) {
  writeBackup();
  const auto list = openList();
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&, thread] {
      for (int i = 0; i < 300; ++i) {
        const bool asksForStore = (i + thread) % 2 == 0;
        const auto answer = asksForStore ? list->find(testing::kHome, testing::kMessagesPath)
                                         : list->find(testing::kMedia, testing::kPicturePath);
        EXPECT_TRUE(answer.file && answer.file->name.ends_with(asksForStore ? "sms.db" : "JPG"));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace chatsum::device
