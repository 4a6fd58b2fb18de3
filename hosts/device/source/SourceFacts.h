// What is known of a source before any of its stores is opened. Plain values: any thread, one at a time.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/language/Say.h"
#include "platform/foundation/Date.h"

namespace chatsum::device {

enum class SourceKind { kDevice, kBackup, kMac, kFile };

/// "device", "backup", "mac" or "file": English, for programs; said() translates it.
[[nodiscard]] constexpr std::string_view wordOf(SourceKind kind) {
  switch (kind) {
    case SourceKind::kBackup:
      return toSay("backup");
    case SourceKind::kMac:
      return toSay("mac");
    case SourceKind::kFile:
      return toSay("file");
    case SourceKind::kDevice:
      break;
  }
  return toSay("device");
}

/// What a source says of the device it comes from; what it does not say is empty.
struct SourceFacts {
  SourceKind kind = SourceKind::kDevice;
  std::string path = {};           ///< absolute
  bool isEncrypted = false;        ///< reading its stores needs a password
  std::string deviceName = {};     ///< as its owner calls it, UTF-8
  std::string productType = {};    ///< "iPhone14,5"
  std::string systemVersion = {};  ///< "17.2"
  std::string buildVersion = {};   ///< "21C62"
  std::string serialNumber = {};
  std::string deviceIdentifier = {};       ///< unique, as backups name their folders by it
  std::string phoneNumber = {};            ///< the owner's, as written there
  std::optional<Date> date = {};           ///< when the backup was made
  std::vector<std::string> warnings = {};  ///< sentences: a backup that was not finished, and the like
};

}  // namespace chatsum::device
