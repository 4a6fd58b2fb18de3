#include "hosts/device/session/SourceSearch.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/fake/TemporaryFolder.h"
#include "tests/support/OrdinaryUser.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

class SourceSearchTest : public ::testing::Test {
 protected:
  void put(const std::string& path, const std::string& bytes = "x") const {
    fs::create_directories((root() / path).parent_path());
    std::ofstream(root() / path) << bytes;
  }
  /// A backup's lists, without anything behind them.
  void putBackup(const std::string& path, const std::string& name, const std::string& day,
                 bool isEncrypted = false) const {
    const std::string start = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>",
                      end = "</dict></plist>";
    put(path + "/Manifest.db");
    put(path + "/Manifest.plist", start + "<key>IsEncrypted</key>" + (isEncrypted ? "<true/>" : "<false/>") + end);
    put(path + "/Info.plist", start + "<key>Device Name</key><string>" + name +
                                  "</string><key>Last Backup Date</key><date>" + day + "T10:00:00Z</date>" + end);
  }
  [[nodiscard]] fs::path root() const { return folder_.path(); }
  [[nodiscard]] std::string real(const std::string& path) const { return (root() / path).string(); }
  /// "kind path" of each, paths below the root.
  [[nodiscard]] std::vector<std::string> shown(const FoundSources& found) const {
    std::vector<std::string> lines;
    for (const SourceFacts& facts : found.sources) {
      EXPECT_TRUE(facts.path.starts_with(folder_.path() + "/")) << facts.path;
      lines.push_back(std::string(wordOf(facts.kind)) + " " + facts.path.substr(folder_.path().size() + 1));
    }
    return lines;
  }

  platform::fake::TemporaryFolder folder_;
};

using Lines = std::vector<std::string>;

TEST_F(SourceSearchTest, FindsBackupsInTheFoldersOfEachSystem) {
  putBackup("home/Library/Application Support/MobileSync/Backup/aaa", "Maya's iPhone", "2024-05-01");
  putBackup("mnt/c/Users/maya/AppData/Roaming/Apple Computer/MobileSync/Backup/bbb", "iPad", "2024-05-03", true);
  putBackup("mnt/c/Users/maya/Apple/MobileSync/Backup/ccc", "Old iPhone", "2024-05-02");
  put("home/Library/Application Support/MobileSync/Backup/notes.txt");
  put("home/Library/Application Support/MobileSync/Backup/empty/notes.txt");
  const FoundSources found = findSources({.homes = {real("home")}, .volumes = {{real("mnt"), 1}}});
  EXPECT_EQ(shown(found), (Lines{"backup mnt/c/Users/maya/AppData/Roaming/Apple Computer/MobileSync/Backup/bbb",
                                 "backup mnt/c/Users/maya/Apple/MobileSync/Backup/ccc",
                                 "backup home/Library/Application Support/MobileSync/Backup/aaa"}));
  const SourceFacts& newest = found.sources.front();
  EXPECT_EQ(newest.deviceName, "iPad");
  EXPECT_TRUE(newest.isEncrypted);
  ASSERT_TRUE(newest.date.has_value());
  EXPECT_EQ(newest.date->secondsSince1970, 1714730400);
  EXPECT_FALSE(found.sources.back().isEncrypted);
  EXPECT_TRUE(found.notes.empty());
}

TEST_F(SourceSearchTest, FindsTheHomesOfMacs) {
  put("home/Library/Messages/chat.db");
  put("Volumes/Disk/Users/noor/Library/Messages/chat.db");
  put("Volumes/Disk/Users/Shared/notes.txt");
  put("media/maya/Disk/Users/ann/Library/Messages/chat.db");
  const FoundSources found =
      findSources({.homes = {real("home")}, .volumes = {{real("Volumes"), 1}, {real("media"), 2}}});
  EXPECT_EQ(shown(found), (Lines{"mac Volumes/Disk/Users/noor", "mac home", "mac media/maya/Disk/Users/ann"}));
}

TEST_F(SourceSearchTest, FindsABackupThatTheUsualFolderIsLinkedTo) {
  putBackup("disk/Backup/aaa", "iPhone", "2024-05-01");
  fs::create_directories(root() / "home/Apple/MobileSync");
  fs::create_directory_symlink(root() / "disk/Backup", root() / "home/Apple/MobileSync/Backup");
  EXPECT_EQ(shown(findSources({.homes = {real("home")}, .volumes = {}})), Lines{"backup disk/Backup/aaa"});
}

TEST_F(SourceSearchTest, SaysWhereItLooked) {
  const FoundSources found = findSources({.homes = {real("home")}, .volumes = {{real("mnt"), 1}, {real("mnt"), 2}}});
  EXPECT_TRUE(found.sources.empty());
  EXPECT_EQ(found.places,
            (Lines{real("home/Library/Application Support/MobileSync/Backup"),
                   real("home/AppData/Roaming/Apple Computer/MobileSync/Backup"), real("home/Apple/MobileSync/Backup"),
                   real("home/Library/Messages"), "the users' folders of disks below " + real("mnt")}));
}

TEST_F(SourceSearchTest, SaysWhatMayNotBeRead) {
  const std::string backups = "home/Library/Application Support/MobileSync/Backup";
  putBackup(backups + "/aaa", "iPhone", "2024-05-01");
  fs::permissions(root(), fs::perms::all);
  fs::permissions(root() / backups, fs::perms::none);
  const FoundSources found = [this] {
    const test::OrdinaryUser user;
    return findSources({.homes = {real("home")}, .volumes = {}});
  }();
  fs::permissions(root() / backups, fs::perms::owner_all);
  EXPECT_TRUE(found.sources.empty());
  ASSERT_EQ(found.notes.size(), 1U);
  EXPECT_NE(found.notes[0].find("'" + real(backups) + "' may not be read"), std::string::npos) << found.notes[0];
}

TEST_F(SourceSearchTest, FindsEveryKindBelowAFolder) {
  putBackup("d/phone/aaa", "iPhone", "2024-05-01");
  put("d/dump/private/var/mobile/Library/SMS/sms.db");
  put("d/dump/private/var/mobile/Library/SMS/Attachments/sms.db");
  put("d/mac/maya/Library/Messages/chat.db");
  putBackup("d/mac/maya/Library/Application Support/MobileSync/Backup/bbb", "iPad", "2023-05-01");
  put("d/loose/sms.db");
  put("d/loose/CallHistory.storedata");
  put("d/calls/CallHistory.storedata");
  const FoundSources found = findSourcesBelow({real("d")});
  EXPECT_EQ(shown(found),
            (Lines{"backup d/phone/aaa", "backup d/mac/maya/Library/Application Support/MobileSync/Backup/bbb",
                   "file d/calls/CallHistory.storedata", "device d/dump", "file d/loose/sms.db", "mac d/mac/maya"}));
}

TEST_F(SourceSearchTest, CountsTheFolderItselfAndEachSourceOnce) {
  putBackup("d/aaa", "iPhone", "2024-05-01");
  EXPECT_EQ(shown(findSourcesBelow({real("d/aaa"), real("d"), real("d/../d/aaa/")})), Lines{"backup d/aaa"});
}

TEST_F(SourceSearchTest, FollowsNoLinksBelowAFolder) {
  putBackup("elsewhere/aaa", "iPhone", "2024-05-01");
  put("d/notes.txt");
  fs::create_directory_symlink(root() / "elsewhere", root() / "d/link");
  fs::create_directory_symlink(root() / "elsewhere/aaa", root() / "d/aaa");
  EXPECT_TRUE(findSourcesBelow({real("d")}).sources.empty());
}

TEST_F(SourceSearchTest, SaysThatItEndedEarly) {
  for (int i = 0; i < 30; ++i) put("d/" + std::to_string(i) + "/notes.txt");
  const FoundSources found = findSourcesBelow({real("d")}, {.depth = 4, .entries = 10});
  ASSERT_EQ(found.notes.size(), 1U);
  EXPECT_NE(found.notes[0].find("too much below '" + real("d") + "'"), std::string::npos) << found.notes[0];
}

TEST_F(SourceSearchTest, TellsNoDeviceOfABackupWithoutLists) {
  put("d/aaa/Manifest.db");
  const FoundSources found = findSourcesBelow({real("d")});
  EXPECT_EQ(shown(found), Lines{"backup d/aaa"});
  EXPECT_EQ(found.sources[0].deviceName, "");
  EXPECT_FALSE(found.sources[0].date.has_value());
}

}  // namespace
}  // namespace chatsum::device
