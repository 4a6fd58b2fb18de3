// Stands in for a backup's list that is missing or damaged: what a file is called says under which name it is stored,
// so only its size and kind stay unknown. Nothing encrypted can be read so. Any thread.
#pragma once

#include <memory>
#include <utility>

#include "hosts/device/backup/BackupFolder.h"
#include "hosts/device/backup/BackupManifest.h"

namespace chatsum::device {

class ComputedManifest final : public BackupManifest {
 public:
  /// `list` is asked first, and what it cannot tell is computed; it may be empty.
  ComputedManifest(BackupFolder folder, std::unique_ptr<BackupManifest> list)
      : folder_(std::move(folder)), list_(std::move(list)) {}

  [[nodiscard]] ManifestAnswer find(std::string_view domain, std::string_view relativePath) const override;

 private:
  BackupFolder folder_;
  std::unique_ptr<BackupManifest> list_;
};

}  // namespace chatsum::device
