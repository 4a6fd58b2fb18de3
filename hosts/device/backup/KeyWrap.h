// Keys wrapped by keys: AES Key Wrap with the default initial value (RFC 3394). No state, any thread.
#pragma once

#include <optional>
#include <string_view>

#include "hosts/device/backup/SecretKey.h"

namespace chatsum::device {

/// The key of 32 bytes in the 40 of `wrapped`; none when `by` is not the key that it was wrapped with, or the bytes are
/// damaged or not 40.
[[nodiscard]] std::optional<SecretKey> unwrapKey(const SecretKey& by, std::string_view wrapped);

}  // namespace chatsum::device
