#include "hosts/device/source/FolderSource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "platform/fake/TemporaryFolder.h"
#include "tests/support/OrdinaryUser.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

class FolderSourceTest : public ::testing::Test {
 protected:
  void put(const std::string& path) {
    fs::create_directories((root() / path).parent_path());
    std::ofstream(root() / path) << "x";
  }
  [[nodiscard]] fs::path root() const { return folder_.path(); }
  [[nodiscard]] std::string real(const std::string& path) const { return (root() / path).string(); }
  [[nodiscard]] std::unique_ptr<DeviceSource> find(const std::string& path = "") const {
    auto source = FolderSource::find(root().string() + path);
    if (!source) throw std::runtime_error(source.problem().sentence);
    return std::move(source.value());
  }
  [[nodiscard]] std::string problem() const {
    const auto source = FolderSource::find(root().string());
    return source ? "" : source.problem().sentence;
  }
  /// Where a store is, "" for none.
  static std::string pathOf(DeviceSource& source, SourceStore store) {
    const auto location = source.store(store);
    if (!location) return "problem: " + location.problem().sentence;
    return location.value() ? location.value()->main : "";
  }

  platform::fake::TemporaryFolder folder_;
};

constexpr const char* kMessagesIn = "/Library/SMS/sms.db";

TEST_F(FolderSourceTest, FindsTheStoresInEachPlace) {
  for (const std::string mobile : {"private/var/mobile", "var/mobile", "mobile", "User"}) {
    fs::remove_all(root());
    put(mobile + "/Library/SMS/sms.db");
    put(mobile + "/Library/AddressBook/AddressBook.sqlitedb");
    put(mobile + "/Library/CallHistoryDB/CallHistory.storedata");
    put(mobile + "/Library/CallHistoryDB/CallHistoryTemp.storedata");
    const auto source = find("/");
    EXPECT_EQ(source->facts().kind, SourceKind::kDevice);
    EXPECT_EQ(source->facts().path, root());
    EXPECT_EQ(pathOf(*source, SourceStore::kMessages), real(mobile + "/Library/SMS/sms.db"));
    EXPECT_EQ(pathOf(*source, SourceStore::kAddressBook), real(mobile + "/Library/AddressBook/AddressBook.sqlitedb"));
    EXPECT_EQ(pathOf(*source, SourceStore::kCalls), real(mobile + "/Library/CallHistoryDB/CallHistory.storedata"));
    EXPECT_EQ(pathOf(*source, SourceStore::kTemporaryCalls),
              real(mobile + "/Library/CallHistoryDB/CallHistoryTemp.storedata"));
    EXPECT_EQ(pathOf(*source, SourceStore::kOldCalls), "");
  }
}

TEST_F(FolderSourceTest, DoesWithoutAnAddressBook) {
  put("var/mobile/Library/SMS/sms.db");
  EXPECT_EQ(pathOf(*find(), SourceStore::kAddressBook), "");
  EXPECT_NE(find()->whyMissing(SourceStore::kAddressBook).find("var/mobile/Library/AddressBook"), std::string::npos);
}

TEST_F(FolderSourceTest, FindsTheOldCallListBesideTheUsersFolder) {
  for (const std::string var : {"private/var/", "var/", ""}) {
    fs::remove_all(root());
    put(var + "mobile/Library/SMS/sms.db");
    put(var + "wireless/Library/CallHistory/call_history.db");
    EXPECT_EQ(pathOf(*find(), SourceStore::kOldCalls), real(var + "wireless/Library/CallHistory/call_history.db"));
  }
}

TEST_F(FolderSourceTest, TakesADeviceThatHasOnlyACallList) {
  put("private/var/wireless/Library/CallHistory/call_history.db");
  const auto source = find();
  EXPECT_EQ(pathOf(*source, SourceStore::kOldCalls), real("private/var/wireless/Library/CallHistory/call_history.db"));
  EXPECT_EQ(pathOf(*source, SourceStore::kMessages), "");
}

TEST_F(FolderSourceTest, FindsTheStoresBehindFoldersOfAnExtraction) {
  for (const std::string prefix :
       {"filesystem1/mobile", "filesystem2/private/var/mobile", "a/var/mobile", "a/b/c/d/private/var/mobile"}) {
    fs::remove_all(root());
    put(prefix + kMessagesIn);
    put(prefix + "/Library/SMS/Attachments/ab/IMG.png");
    const auto source = find();
    EXPECT_EQ(pathOf(*source, SourceStore::kMessages), real(prefix + kMessagesIn));
    EXPECT_EQ(source->fileOfMessage("~/Library/SMS/Attachments/ab/IMG.png"),
              real(prefix + "/Library/SMS/Attachments/ab/IMG.png"));
  }
}

TEST_F(FolderSourceTest, FindsTheOldCallListOfAnExtraction) {
  put("filesystem1/mobile/Library/SMS/sms.db");
  put("filesystem1/wireless/Library/CallHistory/call_history.db");
  EXPECT_EQ(pathOf(*find(), SourceStore::kOldCalls), real("filesystem1/wireless/Library/CallHistory/call_history.db"));
}

TEST_F(FolderSourceTest, PrefersTheUsualPlaceToADeeperOne) {
  put("backup/old/mobile/Library/SMS/sms.db");
  put("var/mobile/Library/SMS/sms.db");
  EXPECT_EQ(pathOf(*find(), SourceStore::kMessages), real("var/mobile/Library/SMS/sms.db"));
}

TEST_F(FolderSourceTest, PrefersMessagesToACallListAlone) {
  put("var/mobile/Library/CallHistoryDB/CallHistory.storedata");
  put("filesystem2/mobile/Library/CallHistoryDB/CallHistory.storedata");
  put("filesystem3/mobile/Library/SMS/sms.db");
  EXPECT_EQ(pathOf(*find(), SourceStore::kMessages), real("filesystem3/mobile/Library/SMS/sms.db"));
}

TEST_F(FolderSourceTest, RefusesToChooseBetweenSeveralDevices) {
  put("filesystem1/mobile/Library/SMS/sms.db");
  put("filesystem2/private/var/mobile/Library/SMS/sms.db");
  EXPECT_NE(problem().find("several devices"), std::string::npos) << problem();
  EXPECT_NE(problem().find("'" + real("filesystem1") + "'"), std::string::npos) << problem();
  EXPECT_NE(problem().find("'" + real("filesystem2") + "'"), std::string::npos) << problem();
  EXPECT_EQ(pathOf(*find("/filesystem2"), SourceStore::kMessages),
            real("filesystem2/private/var/mobile/Library/SMS/sms.db"));
}

TEST_F(FolderSourceTest, CountsADeviceOnceWhoseFoldersAreLinked) {
  put("dump/private/var/mobile/Library/SMS/sms.db");
  fs::create_symlink("private/var", root() / "dump/var");
  fs::create_symlink("dump", root() / "same");
  EXPECT_EQ(pathOf(*find(), SourceStore::kMessages), real("dump/private/var/mobile/Library/SMS/sms.db"));
}

TEST_F(FolderSourceTest, FollowsNoLinksOnItsSearch) {
  put("elsewhere/a/mobile/Library/SMS/sms.db");
  fs::create_directory(root() / "source");
  fs::create_symlink(root() / "elsewhere", root() / "source/link");
  EXPECT_FALSE(FolderSource::find(real("source")));
}

TEST_F(FolderSourceTest, EndsItsSearchInALargeTree) {
  put("0");
  for (int i = 1; i < 20'100; ++i) fs::create_hard_link(root() / "0", root() / std::to_string(i));
  EXPECT_NE(problem().find("too many folders"), std::string::npos) << problem();
}

TEST_F(FolderSourceTest, SaysWhereItLooked) {
  const std::string sentence = problem();
  for (const std::string& place :
       {std::string("private/var/mobile/Library/SMS/sms.db"), std::string(" var/mobile/Library/SMS/sms.db"),
        std::string(" mobile/Library/SMS/sms.db"), root().string()}) {
    EXPECT_NE(sentence.find(place), std::string::npos) << place << " in " << sentence;
  }
}

TEST_F(FolderSourceTest, SaysThatAWalAloneIsNoStore) {
  put("var/mobile/Library/SMS/sms.db-wal");
  EXPECT_NE(problem().find("holds only 'var/mobile/Library/SMS/sms.db-wal'"), std::string::npos) << problem();
}

TEST_F(FolderSourceTest, RefusesAFileAndAMissingFolder) {
  put("sms.db");
  EXPECT_NE(FolderSource::find(real("sms.db")).problem().sentence.find("is a file"), std::string::npos);
  EXPECT_NE(FolderSource::find(real("nothing")).problem().sentence.find("There is no folder"), std::string::npos);
  EXPECT_FALSE(FolderSource::find(""));
}

TEST_F(FolderSourceTest, SaysWhatMayNotBeRead) {
  put("var/mobile/Library/SMS/sms.db");
  fs::permissions(root(), fs::perms::all);
  for (const std::string place : {"/var/mobile", ""}) {
    const fs::perms before = fs::status(root().string() + place).permissions();
    fs::permissions(root().string() + place, fs::perms::none);
    const std::string sentence = [this] {
      const test::OrdinaryUser user;
      return problem();
    }();
    fs::permissions(root().string() + place, before);
    EXPECT_NE(sentence.find("may not be read"), std::string::npos) << sentence;
    EXPECT_NE(sentence.find("'" + root().string() + place), std::string::npos) << sentence;
  }
}

TEST_F(FolderSourceTest, FindsFilesOfMessagesHoweverUserStandsThere) {
  put("private/var/mobile/Library/SMS/sms.db");
  put("private/var/mobile/Library/SMS/Attachments/ab/IMG.png");
  const std::string path = "Library/SMS/Attachments/ab/IMG.png";
  const auto check = [&] {
    const auto source = find();
    for (const std::string start : {"User/", "/User/", "~/", "/var/mobile/", "/private/var/mobile/"}) {
      EXPECT_EQ(source->fileOfMessage(start + path), real("private/var/mobile/" + path)) << start;
      EXPECT_EQ(source->originalOfMessage(start + path)->name, "private/var/mobile/" + path);
    }
  };
  check();  // without User
  fs::create_symlink("/private/var/mobile", root() / "User");
  check();
  fs::remove(root() / "User");
  put("User/other.txt");  // a folder that holds other things
  check();
  EXPECT_EQ(find()->fileOfMessage("User/other.txt"), real("User/other.txt"));
}

TEST_F(FolderSourceTest, AnswersNoFilesFromElsewhere) {
  put("var/mobile/Library/SMS/sms.db");
  const auto source = find();
  EXPECT_EQ(source->fileOfMessage("/etc/passwd"), std::nullopt);
  EXPECT_EQ(source->fileOfMessage("User/../../../../../../../etc/passwd"), std::nullopt);
  EXPECT_EQ(source->fileOfMessage("User/missing.png"), std::nullopt);
}

TEST_F(FolderSourceTest, NamesTheFilesOfAStore) {
  put("var/mobile/Library/SMS/sms.db");
  put("var/mobile/Library/SMS/sms.db-wal");
  const auto files = find()->originals(SourceStore::kMessages);
  ASSERT_EQ(files.size(), 2U);
  EXPECT_EQ(files[1].name, "var/mobile/Library/SMS/sms.db-wal");
  EXPECT_EQ(files[1].path, real("var/mobile/Library/SMS/sms.db-wal"));
  EXPECT_TRUE(find()->originals(SourceStore::kAddressBook).empty());
}

TEST_F(FolderSourceTest, KnowsTheDeviceAroundAStore) {
  EXPECT_EQ(FolderSource::around("/copy/private/var/mobile/Library/SMS/sms.db")->facts().path, "/copy");
  EXPECT_EQ(FolderSource::around("/copy/var/mobile/Library/SMS/sms.db")->facts().path, "/copy");
  EXPECT_EQ(FolderSource::around("/copy/mobile/Library/CallHistoryDB/CallHistory.storedata")->facts().path, "/copy");
  EXPECT_EQ(FolderSource::around("/mobile/Library/SMS/sms.db")->facts().path, "/");
  EXPECT_EQ(FolderSource::around("/copy/Library/SMS/sms.db"), nullptr);
  EXPECT_EQ(FolderSource::around("/copy/automobile/Library/SMS/sms.db"), nullptr);
  EXPECT_EQ(FolderSource::around("/copy/sms.db"), nullptr);
}

}  // namespace
}  // namespace chatsum::device
