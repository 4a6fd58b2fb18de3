// Manifest.db, the list of a backup from iOS 10 on: an SQLite database whose rows carry an archived description each.
// Any thread; one look-up at a time, others wait.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "hosts/device/backup/BackupManifest.h"
#include "hosts/device/stores/StoreFiles.h"
#include "hosts/device/stores/StoreProblem.h"
#include "hosts/device/stores/StoreSnapshot.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {

class ManifestDatabase final : public BackupManifest {
 public:
  /// The problem when it is damaged or another database.
  [[nodiscard]] static StoreResult<std::unique_ptr<BackupManifest>> open(const StoreLocation& location);

  [[nodiscard]] ManifestAnswer find(std::string_view domain, std::string_view relativePath) const override;

 private:
  ManifestDatabase(StoreSnapshot snapshot, sqlite::Connection connection);

  StoreSnapshot snapshot_;
  sqlite::Connection connection_;
  mutable std::mutex mutex_;
  sqlite::Statement row_;
};

}  // namespace chatsum::device
