#include "hosts/device/settings/SettingsFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "hosts/device/home/HomePaths.h"
#include "hosts/device/language/Say.h"
#include "platform/foundation/PathComponents.h"
#include "platform/system/files/AtomicWrite.h"
#include "platform/system/files/MakeFolder.h"
#include "platform/system/files/ReadFile.h"
#include "platform/system/propertylists/PropertyListGuard.h"

namespace chatsum::device {
namespace {

using platform::system::PropertyListFile;

StoreProblem cannotWrite(const std::string& path, const std::string& reason) {
  return {say("The settings file '{0}' cannot be written ({1}); nothing was changed.", path, reason)};
}

}  // namespace

SettingsFile::SettingsFile(std::string path, PropertyListFile file)
    : path_(std::move(path)), file_(std::move(file)), values_(file_.dictionary()) {}

StoreResult<SettingsFile> SettingsFile::read(const std::string& home) {
  std::string path = settingsFileIn(home);
  const auto bytes = platform::system::readFile(path, platform::system::propertylist::kMostBytes);
  if (!bytes) {
    const int error = errno;
    if (error == ENOENT || error == ENOTDIR) return SettingsFile(std::move(path), PropertyListFile());
    return StoreProblem{say("The settings file '{0}' cannot be read ({1}).", path, std::strerror(error))};
  }
  auto file = PropertyListFile::parse(*bytes);
  if (!file) {
    return StoreProblem{
        say("The settings file '{0}' is no property list that can be read; mend it, or move it away.", path)};
  }
  return SettingsFile(std::move(path), std::move(*file));
}

std::optional<StoreProblem> SettingsFile::write(std::string_view key, const Value& value) {
  file_.set(std::string(key), value);
  const auto bytes = file_.bytes();
  if (!bytes) return cannotWrite(path_, say("it holds texts that are none"));
  if (const int number = platform::system::makeFolder(path::deletingLastComponent(path_))) {
    return cannotWrite(path_, std::strerror(number));
  }
  if (const int number = platform::system::writeFileAtomically(path_, *bytes)) {
    return cannotWrite(path_, std::strerror(number));
  }
  values_ = file_.dictionary();
  return std::nullopt;
}

}  // namespace chatsum::device
