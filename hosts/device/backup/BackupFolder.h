// The folder of a Finder or iTunes backup: its own files, and the device's, which stand there under the SHA-1 of what
// they are. Links are never followed, so nothing outside is reached. Immutable, any thread.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/stores/ReadDigests.h"

namespace chatsum::device {

/// Whether a text is 40 hexadecimal digits, so that it can be no path.
[[nodiscard]] bool isFileId(std::string_view text);

/// The id of a device's file: SHA-1 of domain, "-" and path, in lower-case hexadecimal digits.
[[nodiscard]] std::string fileIdOf(std::string_view domain, std::string_view relativePath);

class BackupFolder {
 public:
  /// Links on the way to the folder itself are followed.
  /// What is read whole is noted in `digests`, unless it is null.
  explicit BackupFolder(const std::string& path, std::shared_ptr<ReadDigests> digests = {});

  /// Absolute, no trailing "/"; as given when it cannot be resolved.
  [[nodiscard]] const std::string& path() const { return path_; }

  /// The path of one of the backup's own files, "Info.plist"; none when no ordinary file stands there.
  [[nodiscard]] std::optional<std::string> ownFile(const std::string& name) const;
  /// Its bytes; none when it is missing, cannot be read, or is longer than `most`.
  [[nodiscard]] std::optional<std::string> readOwnFile(const std::string& name, std::size_t most) const;
  /// Its first bytes, fewer when it is shorter; none when it is missing or cannot be read.
  [[nodiscard]] std::optional<std::string> startOfOwnFile(const std::string& name, std::size_t length) const;

  /// The path of a file of the device: in the folder of the id's first two digits, as iOS 10 and later do it, else
  /// beside the backup's own. None when `id` is none or no ordinary file stands there.
  [[nodiscard]] std::optional<std::string> storedFile(std::string_view id) const;
  /// The paths where it would be looked for before the one where it stands, or at all.
  [[nodiscard]] std::vector<std::string> placesWithout(std::string_view id) const;

  [[nodiscard]] const std::shared_ptr<ReadDigests>& digests() const { return digests_; }

 private:
  std::string path_;
  std::shared_ptr<ReadDigests> digests_;
};

}  // namespace chatsum::device
