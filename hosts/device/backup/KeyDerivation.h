// Makes the key of a backup's password, which is slow on purpose. Secrets on the way are wiped. No state, any thread.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "hosts/device/backup/KeyBag.h"
#include "hosts/device/backup/SecretKey.h"

namespace chatsum::device {

enum class PasswordHash { kSha1, kSha256 };

/// PBKDF2 with HMAC (RFC 8018, section 5.2), 32 bytes; at least one iteration. `advance` is told every few thousand
/// rounds how many were made since it was last told, and false ends the work; then, and when the crypto library fails,
/// there is no key. The rounds of one iteration are those of the hash's blocks: two for SHA-1, one for SHA-256.
[[nodiscard]] std::optional<SecretKey> pbkdf2(PasswordHash hash, std::string_view password, std::string_view salt,
                                              std::uint32_t iterations,
                                              const std::function<bool(std::uint64_t rounds)>& advance = {});

/// The key that unwraps the keys of `bag`'s classes if the password (UTF-8) is right. The work is done on a thread of
/// its own; `progress` is told on the calling one about ten times a second, from 0 to 1, and false stops it: then there
/// is no key.
[[nodiscard]] std::optional<SecretKey> derivePasswordKey(const KeyBag& bag, std::string_view password,
                                                         const std::function<bool(double done)>& progress);

}  // namespace chatsum::device
