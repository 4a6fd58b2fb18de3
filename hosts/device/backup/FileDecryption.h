// Decrypts one file of an encrypted backup: AES-256 in CBC mode, the initial vector zero, the end padded as PKCS #7
// (RFC 5652, section 6.3) does. Reads and writes in chunks, so any length takes little memory. No state, any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/device/backup/SecretKey.h"

namespace chatsum::device {

struct DecryptedFile {
  int error = 0;                 ///< an errno; then there is no new file
  std::uint64_t length = 0;      ///< bytes written
  bool startsOtherwise = false;  ///< not with the expected bytes; then there is no new file, and no error either
  bool isShort = false;          ///< fewer bytes than were stated: the stored file is cut off
  bool isBroken = false;         ///< stored bytes after the last whole block were left out
  bool isUnpadded = false;       ///< the end is not padded; only the stated size says where the content ends
};

/// Decrypts `from`, an ordinary file and no link, to `to`, which must not exist and becomes private (0600). A `size`
/// cuts what is longer; without one, the padding says where the content ends. `expectedStart` is looked for before
/// anything is written.
[[nodiscard]] DecryptedFile decryptFile(const std::string& from, const std::string& to, const SecretKey& key,
                                        std::optional<std::uint64_t> size, std::string_view expectedStart = {});

}  // namespace chatsum::device
