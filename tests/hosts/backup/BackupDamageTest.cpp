// Backups that are incomplete, damaged, or made to do harm.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/device/backup/BackupSource.h"
#include "tests/hosts/backup/BackupFixture.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using testing::bytesOf;
using ::testing::HasSubstr;
using testing::kHome;
using testing::kMedia;
using testing::kMessagesPath;
using testing::putBytes;

class BackupDamageTest : public testing::BackupTest {
 protected:
  [[nodiscard]] std::string sentenceOfMessages() const {
    const auto source = open();
    return source ? wordIn(*source, SourceStore::kMessages) : "";
  }
  /// A backup whose store a test makes itself.
  void writeWith(const test::BackupEntry& store, const test::BackupOptions& options) const {
    fs::remove_all(backup());
    test::BackupWriter writer(backup(), options);
    writer.add(store);
    finish(writer);
  }
  [[nodiscard]] test::BackupEntry storeEntry() const {
    return {.domain = kHome, .path = kMessagesPath, .content = databaseWith("hello")};
  }
  [[nodiscard]] fs::path storedMessages() const { return backup() / "3d" / "3d0d7e5fb2ce288813306e4d4636395e047a3d28"; }
  void expectOneWarning(const std::string& part) const {
    const auto source = open();
    ASSERT_TRUE(source);
    ASSERT_EQ(source->facts().warnings.size(), 1U);
    EXPECT_NE(source->facts().warnings[0].find(part), std::string::npos) << source->facts().warnings[0];
  }
};

TEST_F(BackupDamageTest, FindsFilesOfAPlainBackupWithoutItsList) {
  const auto writer = startBackup();
  finish(*writer);
  putBytes(backup() / "Manifest.db", "SQLite format 3");
  EXPECT_EQ(sentenceOfMessages(), "hello");
  expectOneWarning("Manifest.db' is damaged");
  fs::remove(backup() / "Manifest.db");
  EXPECT_EQ(sentenceOfMessages(), "hello");
  expectOneWarning("Manifest.db' is missing");
  const auto source = open();
  EXPECT_EQ(bytesOf(*source->fileOfMessage(std::string("~/") + testing::kPicturePath)), "a picture");
  EXPECT_FALSE(source->fileOfMessage("~/Library/SMS/Attachments/none.jpg"));
  EXPECT_EQ(wordIn(*source, SourceStore::kAddressBook), "none");
}

TEST_F(BackupDamageTest, FindsFilesOfAnOldBackupWhoseListIsCut) {
  writeBackup({.isFlat = true});
  const std::string list = bytesOf(backup() / "Manifest.mbdb");
  putBytes(backup() / "Manifest.mbdb", list.substr(0, list.size() - 20));
  EXPECT_EQ(sentenceOfMessages(), "hello");
  expectOneWarning("Manifest.mbdb' is damaged");
  const auto source = open();
  EXPECT_TRUE(source->fileOfMessage(std::string("~/") + testing::kPicturePath));  // listed after the damage
}

TEST_F(BackupDamageTest, SaysThatNothingEncryptedCanBeReadWithoutTheList) {
  writeBackup(encrypted());
  const std::string list = bytesOf(backup() / "Manifest.db");
  putBytes(backup() / "Manifest.db", list.substr(0, 4000));
  EXPECT_FALSE(tryToOpen());
  putBytes(backup() / "Manifest.db", std::string(8192, 'x'));
  EXPECT_THAT(problemOfOpening(), HasSubstr("Manifest.db' is damaged"));
  fs::remove(backup() / "Manifest.db");
  EXPECT_THAT(problemOfOpening(), HasSubstr("Manifest.db' is missing"));
  EXPECT_TRUE(fs::is_empty(temporary()));
}

TEST_F(BackupDamageTest, ReadsAnOldEncryptedListUpToTheDamage) {
  const auto writer = startBackup({.password = testing::kPassword, .isFlat = true, .hasOldKeyBag = true});
  writer->add({.domain = kHome, .path = "Library/AddressBook/AddressBook.sqlitedb", .content = databaseWith("people")});
  finish(*writer);
  const std::string list = bytesOf(backup() / "Manifest.mbdb");
  putBytes(backup() / "Manifest.mbdb", list.substr(0, list.size() - 20));
  EXPECT_EQ(sentenceOfMessages(), "hello");
  expectOneWarning("Manifest.mbdb' is damaged");
  EXPECT_THAT(wordIn(*open(), SourceStore::kAddressBook), HasSubstr("list of files is damaged"));
  EXPECT_EQ(wordIn(*open(), SourceStore::kCalls), "none");
  putBytes(backup() / "Manifest.mbdb", list.substr(0, 20));
  EXPECT_THAT(problemOfOpening(), HasSubstr("Manifest.mbdb' is damaged"));
}

TEST_F(BackupDamageTest, SaysWhenTheKeysAreDamaged) {
  auto options = encrypted();
  options.keyBag = "VERS";
  writeWith(storeEntry(), options);
  EXPECT_THAT(problemOfOpening(), HasSubstr("are damaged (in its Manifest.plist)"));
  options.keyBag = test::keyBagItem("UUID", "u") + test::keyBagItem("SALT", "s") +
                   test::keyBagNumber("ITER", 4'000'000'000U) + test::keyBagItem("UUID", "c") +
                   test::keyBagNumber("CLAS", 3) + test::keyBagNumber("WRAP", 2) +
                   test::keyBagItem("WPKY", std::string(40, 'k'));
  writeWith(storeEntry(), options);
  EXPECT_THAT(problemOfOpening(), HasSubstr("more work on the password"));
  options.keyBag = "";
  writeWith(storeEntry(), options);
  EXPECT_THAT(problemOfOpening(), HasSubstr("are damaged"));
}

TEST_F(BackupDamageTest, SaysWhenAStoreIsMissingFromItsPlace) {
  for (const auto& options : {test::BackupOptions(), encrypted()}) {
    writeWith(storeEntry(), options);
    fs::remove(storedMessages());
    EXPECT_THAT(sentenceOfMessages(), HasSubstr("is listed in the backup, but its file is missing"));
    fs::create_symlink("/etc/passwd", storedMessages());
    EXPECT_THAT(sentenceOfMessages(), HasSubstr("is listed in the backup, but its file is missing"));
  }
}

TEST_F(BackupDamageTest, SaysWhenAnEncryptedStoreIsCut) {
  writeWith(storeEntry(), encrypted());
  const std::string stored = bytesOf(storedMessages());
  putBytes(storedMessages(), stored.substr(0, 4096));
  EXPECT_THAT(sentenceOfMessages(), HasSubstr("sms.db' is cut off"));
  putBytes(storedMessages(), stored.substr(0, 4099));
  EXPECT_THAT(sentenceOfMessages(), HasSubstr("sms.db' is cut off"));
  putBytes(storedMessages(), "");
  EXPECT_THAT(sentenceOfMessages(), HasSubstr("sms.db' is cut off"));
  putBytes(storedMessages(), stored + "tail");
  EXPECT_EQ(sentenceOfMessages(), "hello");
}

TEST_F(BackupDamageTest, SaysWhenAPlainStoreIsCut) {
  writeWith(storeEntry(), {});
  fs::resize_file(storedMessages(), 4096);
  EXPECT_THAT(sentenceOfMessages(), HasSubstr("sms.db' is cut off"));
  EXPECT_THAT(sentenceOfMessages(), HasSubstr(backup().string()));
}

TEST_F(BackupDamageTest, ReadsAllOfAStoreWhateverSizeIsListed) {
  auto store = storeEntry();
  std::string wal;
  auto main = store;
  main.content = databaseWith("in the wal", &wal);
  ASSERT_GT(wal.size(), 8192U);
  for (const std::uint64_t wrong :
       {std::uint64_t{0}, std::uint64_t{4096}, std::uint64_t{1000}, std::uint64_t{1} << 40}) {
    SCOPED_TRACE(wrong);
    store.size = wrong;
    writeWith(store, encrypted());
    EXPECT_EQ(sentenceOfMessages(), "hello");
    fs::remove_all(backup());
    test::BackupWriter writer(backup(), encrypted());
    writer.add(main);
    writer.add({.domain = kHome, .path = "Library/SMS/sms.db-wal", .content = wal, .size = wrong});
    finish(writer);
    EXPECT_EQ(sentenceOfMessages(), "in the wal");
  }
}

TEST_F(BackupDamageTest, TellsOfAWalThatIsSmallerThanListedButEndsWhole) {
  std::string wal;
  const std::string main = databaseWith("in the wal", &wal);
  wal += wal.substr(32);  // pages of an earlier turn: even their number, so that the length needs no padding
  ASSERT_EQ(wal.size() % 16, 0U);
  for (const auto& options : {test::BackupOptions(), encrypted()}) {
    fs::remove_all(backup());
    test::BackupWriter writer(backup(), options);
    writer.add({.domain = kHome, .path = kMessagesPath, .content = main});
    writer.add({.domain = kHome,
                .path = "Library/SMS/sms.db-wal",
                .content = wal,
                .size = wal.size() + 4120,
                .isPadded = false});
    finish(writer);
    const auto source = open();
    EXPECT_EQ(wordIn(*source, SourceStore::kMessages), "in the wal");
    ASSERT_EQ(source->facts().warnings.size(), 1U);
    EXPECT_THAT(source->facts().warnings[0], HasSubstr("sms.db-wal' is smaller than the backup lists"));
  }
}

TEST_F(BackupDamageTest, TellsOfAStoreThatDoesNotEndWithAWholeBlock) {
  writeWith(storeEntry(), encrypted());
  putBytes(storedMessages(), bytesOf(storedMessages()) + "tail");
  const auto source = open();
  EXPECT_EQ(wordIn(*source, SourceStore::kMessages), "hello");
  ASSERT_EQ(source->facts().warnings.size(), 1U);
  EXPECT_THAT(source->facts().warnings[0], HasSubstr("sms.db' is damaged at its end"));
}

TEST_F(BackupDamageTest, ReadsAStoreWithoutPadding) {
  auto store = storeEntry();
  store.isPadded = false;
  writeWith(store, encrypted());
  EXPECT_EQ(sentenceOfMessages(), "hello");
}

TEST_F(BackupDamageTest, SaysWhenAStoreHasNoKeyOrIsNoDatabase) {
  auto store = storeEntry();
  store.hasKey = false;
  writeWith(store, encrypted());
  EXPECT_THAT(sentenceOfMessages(), HasSubstr("its key is missing or damaged"));
  store = storeEntry();
  store.content = "not a database, but encrypted well";
  writeWith(store, encrypted());
  EXPECT_THAT(sentenceOfMessages(), HasSubstr("decrypted, it is no database"));
}

TEST_F(BackupDamageTest, LosesNoWalWithoutAWord) {
  std::string wal;
  const std::string main = databaseWith("in the wal", &wal);
  for (const auto& options : {test::BackupOptions(), encrypted()}) {
    fs::remove_all(backup());
    test::BackupWriter writer(backup(), options);
    writer.add({.domain = kHome, .path = kMessagesPath, .content = main});
    writer.add({.domain = kHome, .path = "Library/SMS/sms.db-wal", .content = wal});
    finish(writer);
    const fs::path stored = writer.storedPath(kHome, "Library/SMS/sms.db-wal");
    fs::resize_file(stored, fs::file_size(stored) - 1024);
    EXPECT_THAT(sentenceOfMessages(), HasSubstr("sms.db-wal' is cut off"));
    fs::remove(stored);
    EXPECT_THAT(sentenceOfMessages(), HasSubstr("sms.db-wal' is listed in the backup, but its file is missing"));
  }
}

TEST_F(BackupDamageTest, HasEmptyFilesOfSizeZero) {
  const auto writer = startBackup(encrypted());
  writer->add({.domain = kMedia, .path = "Library/SMS/Attachments/empty.txt", .content = ""});
  writer->add({.domain = kHome, .path = "Library/SMS/sms.db-wal", .content = ""});
  finish(*writer);
  const auto source = open();
  const auto file = source->fileOfMessage("~/Library/SMS/Attachments/empty.txt");
  ASSERT_TRUE(file);
  EXPECT_EQ(bytesOf(*file), "");
  EXPECT_EQ(wordIn(*source, SourceStore::kMessages), "hello");
}

TEST_F(BackupDamageTest, ReachesNothingOutsideThroughIdsPathsAndLinks) {
  putBytes(root() / "secret", databaseWith("outside"));
  auto store = storeEntry();
  for (const std::string id : {"../secret", "..", "/etc/passwd", "3d/../../secret"}) {
    store.id = id;
    writeWith(store, encrypted());
    EXPECT_FALSE(tryToOpen()) << id;  // what the list says of its most wanted file cannot be right
    fs::remove_all(backup());
    writeWith(store, {});
    EXPECT_EQ(sentenceOfMessages(), "hello") << id;  // by the computed name
  }
  writeWith(storeEntry(), {});
  fs::remove_all(backup() / "3d");
  fs::create_directory(root() / "3d");
  fs::rename(root() / "secret", root() / "3d" / "3d0d7e5fb2ce288813306e4d4636395e047a3d28");
  fs::create_symlink(root() / "3d", backup() / "3d");
  EXPECT_THAT(sentenceOfMessages(), HasSubstr("its file is missing"));
}

TEST_F(BackupDamageTest, SurvivesTwoFilesOfOneId) {
  auto wal = storeEntry();
  wal.path = "Library/SMS/sms.db-wal";
  wal.id = "3d0d7e5fb2ce288813306e4d4636395e047a3d28";
  test::BackupWriter writer(backup(), encrypted());
  writer.add(storeEntry());
  writer.add(wal);
  finish(writer);
  const auto source = open();
  EXPECT_NE(wordIn(*source, SourceStore::kMessages), "");
}

TEST_F(BackupDamageTest, StreamsHugeSparseFilesOrRefusesThem) {
  auto store = storeEntry();
  writeWith(store, {});
  fs::resize_file(storedMessages(), 0);
  fs::resize_file(storedMessages(), std::uintmax_t{2} << 30);
  EXPECT_THAT(sentenceOfMessages(), HasSubstr("holds only zeros"));
  store.size = std::uint64_t{2} << 30;
  writeWith(store, encrypted());
  fs::resize_file(storedMessages(), 0);
  fs::resize_file(storedMessages(), std::uintmax_t{2} << 30);
  EXPECT_THAT(sentenceOfMessages(), HasSubstr("decrypted, it is no database"));
  // So are the lists.
  for (const char* const name : {"Manifest.db", "Info.plist", "Status.plist"}) {
    fs::resize_file(backup() / name, 0);
    fs::resize_file(backup() / name, std::uintmax_t{2} << 30);
  }
  EXPECT_THAT(problemOfOpening(), HasSubstr("Manifest.db' is damaged"));
  EXPECT_TRUE(fs::is_empty(temporary()));
}

TEST_F(BackupDamageTest, SaysThatThePrivateFolderIsGone) {
  writeBackup(encrypted());
  const auto source = open();
  for (const auto& entry : fs::directory_iterator(temporary())) fs::remove_all(entry.path());
  const std::string sentence = wordIn(*source, SourceStore::kMessages);
  EXPECT_THAT(sentence, HasSubstr("cannot be decrypted into a private folder"));
}

TEST_F(BackupDamageTest, PutsNoSecretInAnySentence) {
  auto store = storeEntry();
  store.hasKey = false;
  writeWith(store, encrypted());
  const std::string all = sentenceOfMessages() + problemOfOpening("another-secret") + problemOfOpening(std::nullopt);
  for (const std::string& secret :
       {std::string(testing::kPassword), std::string("another-secret"), std::string(testing::kPasswordKey)}) {
    EXPECT_EQ(all.find(secret), std::string::npos);
  }
}

}  // namespace
}  // namespace chatsum::device
