// Finds and opens the list of a backup's files, whichever it has. No state, any thread.
#pragma once

#include <memory>

#include "hosts/device/backup/BackupManifest.h"
#include "hosts/device/backup/BackupPlists.h"
#include "hosts/device/backup/KeyRing.h"
#include "hosts/device/backup/PrivateCopies.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// What opens an encrypted backup; both are there or neither.
struct BackupAccess {
  const KeyRing* keys = nullptr;
  PrivateCopies* copies = nullptr;
};

/// Opens Manifest.db, decrypting it first if it is encrypted, else Manifest.mbdb. When a backup that is not encrypted
/// has neither or a damaged one, files are found by computing their names, and `lists` gets a warning.
[[nodiscard]] StoreResult<std::unique_ptr<BackupManifest>> openManifest(const BackupFolder& folder, BackupPlists& lists,
                                                                        const BackupAccess& access);

}  // namespace chatsum::device
