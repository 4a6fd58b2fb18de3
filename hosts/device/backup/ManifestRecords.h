// Manifest.mbdb, the list of a backup up to iOS 9: the letters "mbdb", two bytes, then one record after the other,
// numbers big-endian, texts and data behind their length (16 bits, FFFF for none). Immutable, any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

#include "hosts/device/backup/BackupManifest.h"

namespace chatsum::device {

class ManifestRecords final : public BackupManifest {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{256} << 20;

  /// Reads records up to the end or to what is damaged.
  explicit ManifestRecords(std::string_view bytes);

  /// Whether all was read; otherwise what is not found may have been lost.
  [[nodiscard]] bool isWhole() const { return isWhole_; }
  [[nodiscard]] bool isEmpty() const { return files_.empty(); }

  [[nodiscard]] ManifestAnswer find(std::string_view domain, std::string_view relativePath) const override;

 private:
  std::unordered_map<std::string, BackupFile> files_;  // by name; of the domains that hold stores and attachments
  bool isWhole_ = false;
};

}  // namespace chatsum::device
