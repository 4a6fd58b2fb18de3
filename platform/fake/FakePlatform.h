// Every service of the platform, each controllable by a test. Files, SQLite, date formatting, folding and the table of
// types are the real ones; files live in a temporary folder of the test's own.
#pragma once

#include <string>

#include "platform/fake/FailingFiles.h"
#include "platform/fake/FakeArtwork.h"
#include "platform/fake/FakeCompanion.h"
#include "platform/fake/FakeContacts.h"
#include "platform/fake/FakeDateFormatting.h"
#include "platform/fake/FakeDispatch.h"
#include "platform/fake/FakeGraphics.h"
#include "platform/fake/FakeScreen.h"
#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/interfaces/Platform.h"
#include "platform/system/files/SystemFiles.h"
#include "platform/system/propertylists/SystemPropertyLists.h"
#include "platform/system/strings/SystemStrings.h"
#include "platform/system/types/SystemUniformTypes.h"

namespace chatsum::platform::fake {

class FakePlatform {
 public:
  /// The home directory is a device path; its folder is made.
  explicit FakePlatform(const std::string& homeDirectory = "/var/mobile");
  FakePlatform(const FakePlatform&) = delete;
  FakePlatform& operator=(const FakePlatform&) = delete;

  [[nodiscard]] Platform& platform() { return platform_; }

  /// Where a device path really stands: "/var/mobile/a" is <temporary folder>/var/mobile/a. A path that is inside the
  /// temporary folder already is itself.
  [[nodiscard]] std::string realPath(const std::string& devicePath) const;
  /// The temporary folder, which stands for the device's "/".
  [[nodiscard]] const std::string& root() const { return folder.path(); }

  /// Makes the missing folders on the way and writes the file; throws std::runtime_error when that fails.
  void put(const std::string& devicePath, std::string_view bytes);
  /// The bytes of a file; throws std::runtime_error when it cannot be read.
  [[nodiscard]] std::string read(const std::string& devicePath) const;

  TemporaryFolder folder;
  FakeLog log;
  FakeClock clock;
  system::SystemFiles realFiles;
  FailingFiles files;
  FakeMainBundle mainBundle;
  FakeDevice device;
  FakeRuntime runtime;
  system::SystemUniformTypes uniformTypes;
  FakeDateFormatting dateFormatting;
  system::SystemStrings strings;
  system::SystemPropertyLists propertyLists;
  FakeGraphics graphics;
  FakeArtwork artwork;
  FakeContacts contacts;
  FakeAddressBook addressBook;
  FakeMessages messages;
  FakeDispatch dispatch;
  FakeDarwinNotifications darwinNotifications;
  FakeCompanion companion;
  FakeScreen screen;

 private:
  Platform platform_;
};

/// Makes a platform current for a scope; the one before comes back at its end.
class ScopedPlatform {
 public:
  explicit ScopedPlatform(Platform& platform) : before_(install(&platform)) {}
  explicit ScopedPlatform(FakePlatform& fake) : ScopedPlatform(fake.platform()) {}
  ScopedPlatform(const ScopedPlatform&) = delete;
  ScopedPlatform& operator=(const ScopedPlatform&) = delete;
  ~ScopedPlatform() { install(before_); }

 private:
  Platform* before_;
};

}  // namespace chatsum::platform::fake
