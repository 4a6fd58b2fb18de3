#include "hosts/device/home/HomePaths.h"

#include <algorithm>

#include "libchatsum/ChatsumSettings/ChatsumSettings.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum::device {

std::string settingsFileIn(const std::string& home) {
  // "User" stands for the home of the one who uses the device.
  constexpr std::string_view kUser = "User/";
  return path::appending(home, std::string_view(ChatsumSettings::settingsPath()).substr(kUser.size()));
}

bool isBelow(std::string_view folder, std::string_view path) {
  if (!path.starts_with(folder)) return false;
  std::string_view rest = path.substr(folder.size());
  if (!folder.ends_with('/') && !rest.empty() && rest.front() != '/') return false;
  while (!rest.empty()) {
    const std::size_t slash = std::min(rest.find('/'), rest.size() - 1);
    if (rest.substr(0, slash + 1) == "../" || rest == "..") return false;
    rest.remove_prefix(slash + 1);
  }
  return true;
}

std::string reportsFolderIn(const std::string& home) { return path::appending(home, "Library/Preferences/Chatsum"); }

std::optional<std::string> pathInHome(const std::string& home, const Containers& containers, const std::string& path) {
  if (isBelow(home, path)) return path;
  if (path == ChatsumSettings::settingsPath()) return settingsFileIn(home);
  for (const auto& [application, folder] : containers) {
    if (isBelow(folder, path)) return path;
  }
  return std::nullopt;
}

}  // namespace chatsum::device
