#include "hosts/device/source/DeviceSource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/fake/TemporaryFolder.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

class DeviceSourceTest : public ::testing::Test {
 protected:
  void put(const std::string& path) {
    fs::create_directories((root() / path).parent_path());
    std::ofstream(root() / path) << "x";
  }
  [[nodiscard]] fs::path root() const { return folder_.path(); }
  [[nodiscard]] std::string real(const std::string& path) const { return (root() / path).string(); }
  [[nodiscard]] std::string problem() const {
    const auto source = DeviceSource::find(root().string());
    return source ? "" : source.problem().sentence;
  }

  platform::fake::TemporaryFolder folder_;
};

TEST_F(DeviceSourceTest, FindsTheStoresInEachPlace) {
  for (const std::string mobile : {"private/var/mobile", "var/mobile", "mobile", "User"}) {
    fs::remove_all(root());
    put(mobile + "/Library/SMS/sms.db");
    put(mobile + "/Library/AddressBook/AddressBook.sqlitedb");
    const auto source = DeviceSource::find(root().string() + "/");
    ASSERT_TRUE(source) << source.problem().sentence;
    EXPECT_EQ(source.value().messagesStore(), real(mobile + "/Library/SMS/sms.db"));
    EXPECT_EQ(source.value().addressBook(), real(mobile + "/Library/AddressBook/AddressBook.sqlitedb"));
  }
}

TEST_F(DeviceSourceTest, DoesWithoutAnAddressBook) {
  put("var/mobile/Library/SMS/sms.db");
  EXPECT_EQ(DeviceSource::find(root().string()).value().addressBook(), std::nullopt);
}

TEST_F(DeviceSourceTest, SaysWhereItLooked) {
  const std::string sentence = problem();
  for (const std::string& place :
       {std::string("private/var/mobile/Library/SMS/sms.db"), std::string(" var/mobile/Library/SMS/sms.db"),
        std::string(" mobile/Library/SMS/sms.db"), root().string()}) {
    EXPECT_NE(sentence.find(place), std::string::npos) << place << " in " << sentence;
  }
}

TEST_F(DeviceSourceTest, KnowsABackup) {
  put("Manifest.db");
  EXPECT_NE(problem().find("backup"), std::string::npos);
}

TEST_F(DeviceSourceTest, SaysThatAWalAloneIsNoStore) {
  put("var/mobile/Library/SMS/sms.db-wal");
  EXPECT_NE(problem().find("holds only 'var/mobile/Library/SMS/sms.db-wal'"), std::string::npos) << problem();
}

TEST_F(DeviceSourceTest, RefusesAFileAndAMissingFolder) {
  put("sms.db");
  EXPECT_NE(DeviceSource::find(real("sms.db")).problem().sentence.find("is a file"), std::string::npos);
  EXPECT_NE(DeviceSource::find(real("nothing")).problem().sentence.find("There is no folder"), std::string::npos);
  EXPECT_FALSE(DeviceSource::find(""));
}

TEST_F(DeviceSourceTest, FindsFilesOfMessagesHoweverUserStandsThere) {
  put("private/var/mobile/Library/SMS/sms.db");
  put("private/var/mobile/Library/SMS/Attachments/ab/IMG.png");
  const std::string path = "Library/SMS/Attachments/ab/IMG.png";
  const auto check = [&] {
    const auto source = DeviceSource::find(root().string());
    for (const std::string start : {"User/", "/User/", "~/", "/var/mobile/", "/private/var/mobile/"}) {
      EXPECT_EQ(source.value().fileOfMessage(start + path), real("private/var/mobile/" + path)) << start;
    }
  };
  check();  // without User
  fs::create_symlink("/private/var/mobile", root() / "User");
  check();
  fs::remove(root() / "User");
  put("User/other.txt");  // a folder that holds other things
  check();
  EXPECT_EQ(DeviceSource::find(root().string()).value().fileOfMessage("User/other.txt"), real("User/other.txt"));
}

TEST_F(DeviceSourceTest, AnswersNoFilesFromElsewhere) {
  put("var/mobile/Library/SMS/sms.db");
  const auto source = DeviceSource::find(root().string());
  EXPECT_EQ(source.value().fileOfMessage("/etc/passwd"), std::nullopt);
  EXPECT_EQ(source.value().fileOfMessage("User/../../../../../../../etc/passwd"), std::nullopt);
  EXPECT_EQ(source.value().fileOfMessage("User/missing.png"), std::nullopt);
}

}  // namespace
}  // namespace chatsum::device
