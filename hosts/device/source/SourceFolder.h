// A folder that mirrors a device's "/". Links inside it mean what they meant on the device and never lead out of it.
// Immutable, any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace chatsum::device {

class SourceFolder {
 public:
  /// `path` is a folder of this machine; links on the way to it are followed.
  explicit SourceFolder(const std::string& path);

  /// The folder's absolute path, no trailing "/"; as given when it cannot be resolved.
  [[nodiscard]] const std::string& path() const { return path_; }

  /// The real path of what stands at a path of the device ("/var/mobile/…" or "var/mobile/…"); none when nothing does.
  /// Absolute links start again at the folder, and ".." does not rise above it.
  [[nodiscard]] std::optional<std::string> resolve(std::string_view devicePath) const;

 private:
  std::string path_;
};

}  // namespace chatsum::device
