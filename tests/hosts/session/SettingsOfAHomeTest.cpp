#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "hosts/device/home/HomePaths.h"
#include "hosts/device/sample/SampleDevice.h"
#include "hosts/device/session/DeviceSession.h"
#include "libchatsum/ChatsumSettings/ChatsumSettings.h"
#include "platform/fake/TemporaryFolder.h"
#include "tests/support/BinaryPropertyList.h"

namespace chatsum::device {
namespace {

void putFormat(const std::filesystem::path& path, int format) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << test::binarySettings({{"ChatsumMessagesDefaultFileFormat", format}});
}

TEST(SettingsOfAHome, AreReadWhileADeviceIsOpenAndNeverTheDevicesOwn) {
  const platform::fake::TemporaryFolder folder;
  DeviceSession::Options options;
  options.source = folder.path() + "/device";
  options.home = folder.path() + "/home";
  ASSERT_FALSE(writeSampleDevice(options.source).has_value());
  putFormat(options.source + "/var/mobile/Library/Preferences/com.orbelle.chatsum.plist", 1);
  const auto session = DeviceSession::open(options);
  ASSERT_TRUE(static_cast<bool>(session));
  session.value()->startLibrary();
  EXPECT_EQ(ChatsumSettings().msgDefaultFileFormat(), 0);
  putFormat(settingsFileIn(options.home), 2);
  EXPECT_EQ(ChatsumSettings().msgDefaultFileFormat(), 2);
}

}  // namespace
}  // namespace chatsum::device
