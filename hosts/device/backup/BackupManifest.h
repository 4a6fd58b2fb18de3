// A backup's list of what it holds of the device. Any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace chatsum::device {

/// What the list says of one file, folder or link of the device.
struct BackupFile {
  enum class Kind { kFile, kFolder, kLink };

  std::string name;  ///< domain, "-" and path: "HomeDomain-Library/SMS/sms.db"
  std::string id;    ///< the name under which it is stored; always an id, see `isFileId`
  Kind kind = Kind::kFile;
  std::optional<std::uint64_t> size;  ///< bytes of the content
  std::uint32_t protectionClass = 0;
  std::string wrappedKey;  ///< the 40 bytes for `KeyRing`; empty when it is not encrypted
};

/// The answer of a list that may be damaged.
struct ManifestAnswer {
  std::optional<BackupFile> file;
  bool isReadable = true;  ///< false: whether there is such a file cannot be told
};

class BackupManifest {
 public:
  BackupManifest() = default;
  virtual ~BackupManifest() = default;
  BackupManifest(const BackupManifest&) = delete;
  BackupManifest& operator=(const BackupManifest&) = delete;

  /// `relativePath` has no slash at either end.
  [[nodiscard]] virtual ManifestAnswer find(std::string_view domain, std::string_view relativePath) const = 0;
};

/// The 40 bytes of a key in a list, which stand behind the number of its class (32 bits, little-endian); the number
/// goes to `protectionClass`. Empty when there are not that many.
[[nodiscard]] std::string wrappedKeyOf(std::string_view bytes, std::uint32_t& protectionClass);

}  // namespace chatsum::device
