// What a backup's three property lists say: which device it is of, whether it was finished, and its wrapped keys.
// Values: any thread, one at a time.
#pragma once

#include <string>

#include "hosts/device/backup/BackupFolder.h"
#include "hosts/device/source/SourceFacts.h"

namespace chatsum::device {

struct BackupPlists {
  SourceFacts facts;        ///< with a warning for each list that is missing or says that something is wrong
  std::string keyBag;       ///< for `KeyBag`; empty when the backup is not encrypted or has lost it
  std::string manifestKey;  ///< of the list of files: its class (32 bits, little-endian), then 40 bytes; or empty

  /// Reads Info.plist, Status.plist and Manifest.plist, XML or binary.
  [[nodiscard]] static BackupPlists read(const BackupFolder& folder);
};

}  // namespace chatsum::device
