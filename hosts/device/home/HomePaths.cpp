#include "hosts/device/home/HomePaths.h"

#include "libchatsum/ChatsumSettings/ChatsumSettings.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum::device {

std::string settingsFileIn(const std::string& home) {
  // "User" stands for the home of the one who uses the device.
  constexpr std::string_view kUser = "User/";
  return path::appending(home, std::string_view(ChatsumSettings::settingsPath()).substr(kUser.size()));
}

std::optional<std::string> pathInHome(const std::string& home, const std::string& path) {
  if (path == home || path.starts_with(home + "/")) return path;
  if (path == ChatsumSettings::settingsPath()) return settingsFileIn(home);
  return std::nullopt;
}

}  // namespace chatsum::device
