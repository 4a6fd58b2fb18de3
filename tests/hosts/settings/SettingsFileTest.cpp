#include "hosts/device/settings/SettingsFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "hosts/device/home/HomePaths.h"
#include "hosts/device/home/HomeSession.h"
#include "libchatsum/ChatsumSettings/ChatsumSettings.h"
#include "platform/fake/TemporaryFolder.h"
#include "tests/support/BinaryPropertyList.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFormat = "ChatsumMessagesDefaultFileFormat";

class SettingsFileTest : public ::testing::Test {
 protected:
  [[nodiscard]] std::string home() const { return folder_.path() + "/home"; }
  [[nodiscard]] std::string path() const { return home() + "/Library/Preferences/com.orbelle.chatsum.plist"; }
  void put(const std::string& bytes) const {
    fs::create_directories(fs::path(path()).parent_path());
    std::ofstream(path(), std::ios::binary) << bytes;
  }
  [[nodiscard]] std::string bytes() const {
    std::ifstream file(path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  [[nodiscard]] SettingsFile read() const {
    auto file = SettingsFile::read(home());
    EXPECT_TRUE(static_cast<bool>(file)) << file.problem().sentence;
    return std::move(file.value());
  }

  platform::fake::TemporaryFolder folder_;
};

TEST_F(SettingsFileTest, StandsInTheHome) {
  EXPECT_EQ(settingsFileIn("/home/ann"), "/home/ann/Library/Preferences/com.orbelle.chatsum.plist");
  EXPECT_EQ(pathInHome("/home/ann", {}, "User/Library/Preferences/com.orbelle.chatsum.plist"),
            settingsFileIn("/home/ann"));
  EXPECT_EQ(pathInHome("/home/ann", {}, "/home/ann/a"), "/home/ann/a");
  EXPECT_EQ(pathInHome("/home/ann", {}, "/home/annette"), std::nullopt);
  EXPECT_EQ(pathInHome("/home/ann", {}, "User/Library/SMS/a.png"), std::nullopt);
  EXPECT_EQ(pathInHome("/home/ann", {}, "/home/ann"), "/home/ann");
  EXPECT_EQ(pathInHome("/home/ann", {}, "/home/ann/..a/b.."), "/home/ann/..a/b..");
  for (const char* path : {"/home/ann/../bob", "/home/ann/..", "/home/ann/x/../../bob", "/home/ann//../bob"}) {
    EXPECT_EQ(pathInHome("/home/ann", {}, path), std::nullopt) << path;
  }
  const Containers containers = {{"com.apple.mobilephone", "/home/phone"}};
  EXPECT_EQ(pathInHome("/home/ann", containers, "/home/phone/a"), "/home/phone/a");
  EXPECT_EQ(pathInHome("/home/ann", containers, "/home/phones"), std::nullopt);
}

TEST_F(SettingsFileTest, ThatIsMissingHasNoKeysAndBeginsAsXml) {
  SettingsFile file = read();
  EXPECT_TRUE(file.values().empty());
  EXPECT_FALSE(fs::exists(home()));
  EXPECT_FALSE(file.write(kFormat, 2).has_value());
  EXPECT_EQ(file.values()[kFormat].integerValue(), 2);
  EXPECT_TRUE(bytes().starts_with("<?xml")) << bytes();
  EXPECT_EQ(read().values()[kFormat].integerValue(), 2);
}

TEST_F(SettingsFileTest, KeepsWhatItDoesNotKnow) {
  put("<plist version=\"1.0\"><dict><key>other</key><data>AAEC</data><key>deep</key><dict><key>a</key><array>"
      "<integer>-1</integer></array></dict></dict></plist>");
  EXPECT_FALSE(read().write("ChatsumEnabled", true).has_value());
  EXPECT_NE(bytes().find("AAEC"), std::string::npos) << bytes();
  EXPECT_EQ(read().values()["deep"], Value(Record{{"a", Array{-1}}}));
  EXPECT_TRUE(read().values()["ChatsumEnabled"].boolValue());
}

TEST_F(SettingsFileTest, StaysBinary) {
  put(test::binarySettings({{kFormat, 0}}, {{"other", "kept"}}));
  EXPECT_FALSE(read().write(kFormat, 1).has_value());
  EXPECT_TRUE(bytes().starts_with("bplist00"));
  EXPECT_EQ(read().values()[kFormat].integerValue(), 1);
  EXPECT_EQ(read().values()["other"], Value("kept"));
}

TEST_F(SettingsFileTest, ThatIsMalformedIsNotRead) {
  for (const char* contents : {"", "garbage", "<plist><array/></plist>", "bplist00"}) {
    put(contents);
    const auto file = SettingsFile::read(home());
    ASSERT_FALSE(static_cast<bool>(file)) << contents;
    EXPECT_NE(file.problem().sentence.find(path()), std::string::npos);
  }
  fs::remove(path());
  fs::create_directory(path());
  EXPECT_FALSE(static_cast<bool>(SettingsFile::read(home())));
}

TEST_F(SettingsFileTest, KeepsItsPermissionsAndLeavesNothingBeside) {
  put("<plist><dict/></plist>");
  ASSERT_EQ(::chmod(path().c_str(), 0600), 0);
  EXPECT_FALSE(read().write(kFormat, 2).has_value());
  struct stat status {};
  ASSERT_EQ(::stat(path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(std::distance(fs::directory_iterator(fs::path(path()).parent_path()), fs::directory_iterator()), 1);
}

TEST_F(SettingsFileTest, InAFolderThatIsReadOnlyIsNotWritten) {
  if (::geteuid() == 0) GTEST_SKIP() << "nothing is read-only for root";
  put("<plist><dict><key>a</key><true/></dict></plist>");
  const std::string before = bytes();
  const std::string preferences = fs::path(path()).parent_path();
  ASSERT_EQ(::chmod(preferences.c_str(), 0500), 0);
  const auto problem = read().write(kFormat, 2);
  ASSERT_EQ(::chmod(preferences.c_str(), 0700), 0);
  ASSERT_TRUE(problem.has_value());
  EXPECT_NE(problem->sentence.find("nothing was changed"), std::string::npos) << problem->sentence;
  EXPECT_EQ(bytes(), before);
}

TEST_F(SettingsFileTest, IsTheOneThatTheLibraryReads) {
  EXPECT_FALSE(read().write(kFormat, 2).has_value());
  EXPECT_FALSE(read().write("ChatsumEnabledPhone", true).has_value());
  const HomeSession session({.home = home()});
  EXPECT_EQ(ChatsumSettings::sharedSettings().msgDefaultFileFormat(), 2);
  EXPECT_TRUE(ChatsumSettings::sharedSettings().isChatsumEnabledPhone());
}

}  // namespace
}  // namespace chatsum::device
