#include "hosts/device/backup/BackupSource.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "hosts/device/session/SourceOpening.h"
#include "tests/hosts/backup/BackupFixture.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using test::BackupEntry;
using test::BackupOptions;
using testing::bytesOf;
using testing::everythingBelow;
using testing::kHome;
using testing::kMedia;

class BackupSourceTest : public testing::BackupTest {
 protected:
  /// Every kind of backup that holds the same.
  [[nodiscard]] static std::vector<BackupOptions> kinds() {
    return {{},
            {.isFlat = true},
            {.isXml = true},
            {.password = testing::kPassword},
            {.password = testing::kPassword, .isXml = true},
            {.password = testing::kPassword, .hasOldKeyBag = true},
            {.password = testing::kPassword, .isFlat = true, .hasOldKeyBag = true}};
  }
};

TEST_F(BackupSourceTest, KnowsABackup) {
  EXPECT_FALSE(BackupSource::isBackup(backup().string()));
  for (const BackupOptions& options : kinds()) {
    writeBackup(options);
    EXPECT_TRUE(BackupSource::isBackup(backup().string()));
    fs::remove_all(backup());
  }
  testing::putBytes(root() / "device/var/mobile/Library/SMS/sms.db", "x");
  EXPECT_FALSE(BackupSource::isBackup((root() / "device").string()));
  EXPECT_FALSE(BackupSource::isBackup((root() / "device/var/mobile/Library/SMS/sms.db").string()));
  EXPECT_FALSE(BackupSource::isBackup(""));
}

TEST_F(BackupSourceTest, BringsOutStoresAndFilesOfEveryKind) {
  for (const BackupOptions& options : kinds()) {
    SCOPED_TRACE(std::string(options.password ? "encrypted " : "plain ") + (options.isFlat ? "flat" : "newer"));
    writeBackup(options);
    const auto before = everythingBelow(backup());
    {
      const auto source = open();
      EXPECT_EQ(source->facts().kind, SourceKind::kBackup);
      EXPECT_EQ(source->facts().isEncrypted, options.password.has_value());
      EXPECT_TRUE(source->facts().warnings.empty());
      EXPECT_EQ(wordIn(*source, SourceStore::kMessages), "hello");
      EXPECT_EQ(wordIn(*source, SourceStore::kAddressBook), "none");
      for (const std::string start : {"User/", "/User/", "~/", "/var/mobile/", "/private/var/mobile/"}) {
        const auto picture = source->fileOfMessage(start + testing::kPicturePath);
        ASSERT_TRUE(picture) << start;
        EXPECT_EQ(bytesOf(*picture), "a picture");
        if (options.password) {
          EXPECT_TRUE(picture->ends_with(".JPG")) << *picture;
          EXPECT_TRUE(picture->starts_with(temporary().string())) << *picture;
        }
      }
    }
    EXPECT_EQ(everythingBelow(backup()), before);
    EXPECT_TRUE(fs::is_empty(temporary()));
    fs::remove_all(backup());
  }
}

TEST_F(BackupSourceTest, IsOpenedLikeEverySource) {
  writeBackup();
  const auto source = openSource(backup().string(), {});
  ASSERT_TRUE(source) << source.problem().sentence;
  EXPECT_EQ(source.value()->facts().deviceName, "Maya's iPhone");
  EXPECT_EQ(BackupSource::factsOf(backup().string()).deviceName, "Maya's iPhone");
}

TEST_F(BackupSourceTest, FindsEveryStore) {
  const auto writer = startBackup(encrypted());
  writer->add({.domain = kHome, .path = "Library/AddressBook/AddressBook.sqlitedb", .content = databaseWith("people")});
  writer->add(
      {.domain = kHome, .path = "Library/CallHistoryDB/CallHistory.storedata", .content = databaseWith("calls")});
  writer->add(
      {.domain = kHome, .path = "Library/CallHistoryDB/CallHistoryTemp.storedata", .content = databaseWith("new")});
  writer->add(
      {.domain = "WirelessDomain", .path = "Library/CallHistory/call_history.db", .content = databaseWith("old")});
  finish(*writer);
  const auto source = open();
  EXPECT_EQ(wordIn(*source, SourceStore::kAddressBook), "people");
  EXPECT_EQ(wordIn(*source, SourceStore::kCalls), "calls");
  EXPECT_EQ(wordIn(*source, SourceStore::kTemporaryCalls), "new");
  EXPECT_EQ(wordIn(*source, SourceStore::kOldCalls), "old");
  const auto originals = source->originals(SourceStore::kOldCalls);
  ASSERT_EQ(originals.size(), 1U);
  EXPECT_EQ(originals[0].name, "WirelessDomain-Library/CallHistory/call_history.db");
}

TEST_F(BackupSourceTest, ReadsRowsThatStandOnlyInTheWal) {
  for (const BackupOptions& options : kinds()) {
    std::string wal;
    const std::string main = databaseWith("only in the wal", &wal);
    ASSERT_GT(wal.size(), 32U);
    test::BackupWriter writer(backup(), options);
    writer.add({.domain = kHome, .path = testing::kMessagesPath, .content = main});
    writer.add({.domain = kHome, .path = "Library/SMS/sms.db-wal", .content = wal});
    writer.add({.domain = kHome, .path = "Library/SMS/sms.db-shm", .content = std::string(32768, '\0')});
    finish(writer);
    const auto source = open();
    EXPECT_EQ(wordIn(*source, SourceStore::kMessages), "only in the wal");
    const auto originals = source->originals(SourceStore::kMessages);
    ASSERT_EQ(originals.size(), 3U);
    EXPECT_EQ(originals[0].name, "HomeDomain-Library/SMS/sms.db");
    EXPECT_EQ(originals[1].name, "HomeDomain-Library/SMS/sms.db-wal");
    EXPECT_EQ(originals[0].path, writer.storedPath(kHome, testing::kMessagesPath).string());
    fs::remove_all(backup());
  }
}

TEST_F(BackupSourceTest, NamesOriginalsAsTheyStandInTheBackup) {
  writeBackup(encrypted());
  const auto source = open();
  EXPECT_TRUE(source->originals(SourceStore::kMessages).empty());  // not asked for yet
  ASSERT_TRUE(source->store(SourceStore::kMessages));
  const auto originals = source->originals(SourceStore::kMessages);
  ASSERT_EQ(originals.size(), 1U);
  EXPECT_EQ(originals[0].path, (backup() / "3d" / "3d0d7e5fb2ce288813306e4d4636395e047a3d28").string());
  const auto picture = source->originalOfMessage(std::string("~/") + testing::kPicturePath);
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->name, std::string("MediaDomain-") + testing::kPicturePath);
  EXPECT_TRUE(picture->path.starts_with(backup().string()));
  EXPECT_FALSE(source->originalOfMessage("~/Library/SMS/Attachments/none.jpg"));
}

TEST_F(BackupSourceTest, AnswersOnlyFilesOfTheBackup) {
  for (const BackupOptions& options : {BackupOptions(), encrypted()}) {
    const auto writer = startBackup(options);
    writer->add({.domain = kMedia, .path = "Library/SMS/Attachments/folder", .kind = BackupEntry::Kind::kFolder});
    writer->add({.domain = kMedia,
                 .path = "Library/SMS/Attachments/link",
                 .content = "/etc/passwd",
                 .kind = BackupEntry::Kind::kLink});
    writer->add({.domain = kMedia, .path = "Library/SMS/Attachments/gone.jpg", .content = "x", .isStored = false});
    writer->add({.domain = kMedia, .path = "../../etc/passwd", .content = "x"});
    finish(*writer);
    const auto source = open();
    for (const std::string path :
         {"User/Library/SMS/Attachments/folder", "User/Library/SMS/Attachments/link",
          "User/Library/SMS/Attachments/gone.jpg", "User/../../etc/passwd", "User/Library/../../../etc/passwd",
          "/etc/passwd", "Library/SMS/sms.db", "User/", "User//", "", "~", "User/' OR 1=1 --"}) {
      EXPECT_EQ(source->fileOfMessage(path), std::nullopt) << path;
      EXPECT_FALSE(source->originalOfMessage(path)) << path;
    }
    EXPECT_EQ(source->fileOfMessage(std::string("User/Library/SMS/Attachments\0/x", 31)), std::nullopt);
    EXPECT_TRUE(source->fileOfMessage(std::string("User//./") + testing::kPicturePath));
    fs::remove_all(backup());
  }
}

TEST_F(BackupSourceTest, KeepsWhatItDecryptsPrivateAndRemovesIt) {
  writeBackup(encrypted());
  {
    const auto source = open();
    ASSERT_TRUE(source->store(SourceStore::kMessages));
    const auto picture = source->fileOfMessage(std::string("~/") + testing::kPicturePath);
    EXPECT_EQ(source->fileOfMessage(std::string("~/") + testing::kPicturePath), picture);
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(temporary())) {
      struct stat status {};
      ASSERT_EQ(::stat(entry.path().c_str(), &status), 0);
      EXPECT_EQ(status.st_mode & 077U, 0U) << entry.path();
      files += entry.is_regular_file();
    }
    EXPECT_EQ(files, 4);  // the lock, the list, the store, the picture
  }
  EXPECT_TRUE(fs::is_empty(temporary()));
}

TEST_F(BackupSourceTest, LeavesNothingWhenItsProcessIsInterrupted) {
  writeBackup(encrypted());
  const auto source = open();
  ASSERT_TRUE(source->store(SourceStore::kMessages));
  EXPECT_FALSE(fs::is_empty(temporary()));
  SnapshotFolder::removeAll();
  EXPECT_TRUE(fs::is_empty(temporary()));
  EXPECT_EQ(source->fileOfMessage(std::string("~/") + testing::kPicturePath), std::nullopt);
}

TEST_F(BackupSourceTest, SaysWhyThereAreNoCalls) {
  writeBackup();
  const std::string plain = open()->whyMissing(SourceStore::kCalls);
  EXPECT_NE(plain.find("an unencrypted backup holds no call list"), std::string::npos) << plain;
  EXPECT_NE(open()->whyMissing(SourceStore::kMessages).find("HomeDomain-Library/SMS/sms.db"), std::string::npos);
  EXPECT_NE(open()->whyMissing(SourceStore::kAddressBook).find("There is no address book in the backup"),
            std::string::npos);
  fs::remove_all(backup());
  writeBackup(encrypted());
  const std::string full = open()->whyMissing(SourceStore::kOldCalls);
  EXPECT_NE(full.find(": looked for HomeDomain-Library/CallHistoryDB/CallHistory.storedata, "
                      "WirelessDomain-Library/CallHistory/call_history.db"),
            std::string::npos)
      << full;
}

TEST_F(BackupSourceTest, AsksForThePasswordOnlyWhenItNeedsIt) {
  int asked = 0;
  const SourceAccess access{.password =
                                [&] {
                                  ++asked;
                                  return std::optional<std::string>(testing::kPassword);
                                },
                            .progress = {}};
  writeBackup();
  EXPECT_TRUE(BackupSource::open(backup().string(), access));
  EXPECT_EQ(asked, 0);
  fs::remove_all(backup());
  writeBackup(encrypted());
  EXPECT_TRUE(BackupSource::open(backup().string(), access));
  EXPECT_EQ(asked, 1);
}

TEST_F(BackupSourceTest, SaysWhatIsWrongWithThePassword) {
  writeBackup(encrypted());
  const auto before = everythingBelow(backup());
  for (const std::string wrong : {"secret-pa55", "", "\xFF\xFE", "secret-Pa55 "}) {
    const std::string sentence = problemOfOpening(wrong);
    EXPECT_NE(sentence.find("The password does not open the backup '" + backup().string()), std::string::npos);
    EXPECT_TRUE(wrong.empty() || sentence.find(wrong) == std::string::npos);
  }
  EXPECT_NE(problemOfOpening(std::nullopt).find("--password-file"), std::string::npos);
  const auto without = BackupSource::open(backup().string(), {});
  ASSERT_FALSE(without);
  EXPECT_NE(without.problem().sentence.find("is encrypted"), std::string::npos);
  EXPECT_EQ(everythingBelow(backup()), before);
  EXPECT_TRUE(fs::is_empty(temporary()));
}

TEST_F(BackupSourceTest, SaysThatItWasStopped) {
  auto options = encrypted();
  options.iterations = 1'000'000;
  writeBackup(options);
  const auto source =
      BackupSource::open(backup().string(), {.password = [] { return std::optional<std::string>(testing::kPassword); },
                                             .progress = [](double) { return false; }});
  ASSERT_FALSE(source);
  EXPECT_NE(source.problem().sentence.find("was stopped"), std::string::npos);
  EXPECT_TRUE(fs::is_empty(temporary()));
}

}  // namespace
}  // namespace chatsum::device
