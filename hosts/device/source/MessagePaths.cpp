#include "hosts/device/source/MessagePaths.h"

#include <array>

namespace chatsum::device {

std::optional<std::string_view> pathInUsersHome(std::string_view devicePath) {
  constexpr std::array<std::string_view, 5> kStarts = {"User/", "/User/", "~/", "/var/mobile/", "/private/var/mobile/"};
  for (const std::string_view start : kStarts) {
    if (devicePath.starts_with(start)) return devicePath.substr(start.size());
  }
  // Whoever the store belongs to: a source has one home only.
  constexpr std::string_view kUsers = "/Users/";
  if (!devicePath.starts_with(kUsers)) return std::nullopt;
  const std::size_t slash = devicePath.find('/', kUsers.size());
  if (slash == std::string_view::npos || slash == kUsers.size()) return std::nullopt;
  const std::string_view name = devicePath.substr(kUsers.size(), slash - kUsers.size());
  if (name == "." || name == "..") return std::nullopt;
  return devicePath.substr(slash + 1);
}

std::optional<std::string_view> pathBesideStore(std::string_view devicePath) {
  const auto path = pathInUsersHome(devicePath);
  if (!path) return std::nullopt;
  constexpr std::array<std::string_view, 2> kFolders = {"Library/SMS/", "Library/Messages/"};
  for (const std::string_view folder : kFolders) {
    if (path->starts_with(folder)) return path->substr(folder.size());
  }
  return std::nullopt;
}

}  // namespace chatsum::device
