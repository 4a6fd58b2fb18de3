// Decrypts one file of an encrypted backup: AES-256 in CBC mode, the initial vector zero, the end padded as PKCS #7
// (RFC 5652, section 6.3) does. Reads and writes in chunks, so any length takes little memory. No state, any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/device/backup/SecretKey.h"
#include "hosts/device/stores/FileDigest.h"

namespace chatsum::device {

/// What every SQLite database starts with.
inline constexpr std::string_view kDatabaseStart("SQLite format 3\0", 16);

/// What a file is, as far as it tells where it ends.
enum class StoredContent {
  kAnything,
  kDatabase,  ///< an SQLite database
  kWal,       ///< what stands beside one
  kJournal,
};

struct DecryptedFile {
  int error = 0;                 ///< an errno; then there is no new file
  std::uint64_t length = 0;      ///< bytes written
  bool startsOtherwise = false;  ///< no database though it should be; then there is no new file, and no error either
  bool isShort = false;          ///< the stored file is cut off
  bool isBroken = false;         ///< stored bytes after the last whole block were left out
  bool isUnpadded = false;       ///< the end is not padded: all whole blocks are content
  bool isBelowSize = false;      ///< not padded, and fewer bytes than `size`, which may be wrong
  bool isCutToSize = false;      ///< not padded, and cut to `size`, which may be wrong
};

/// Decrypts `from`, an ordinary file and no link, to `to`, which must not exist and becomes private (0600). The padding
/// says where the content ends, whatever `size` is: stores grow and shrink while they are backed up. Without padding
/// all whole blocks are the content, but files that are no part of a store are cut to a smaller `size` above 0. That a
/// database is none is found before anything is written. `stored`, when given, becomes the digest of all stored bytes.
[[nodiscard]] DecryptedFile decryptFile(const std::string& from, const std::string& to, const SecretKey& key,
                                        std::optional<std::uint64_t> size,
                                        StoredContent content = StoredContent::kAnything,
                                        std::optional<FileDigest>* stored = nullptr);

}  // namespace chatsum::device
