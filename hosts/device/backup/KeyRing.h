// The keys of an encrypted backup once its password is known. Immutable: any thread.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>

#include "hosts/device/backup/KeyBag.h"
#include "hosts/device/backup/SecretKey.h"

namespace chatsum::device {

class KeyRing {
 public:
  /// Unwraps the keys of the bag's classes. None when `passwordKey` opens none of them: it is of another password.
  [[nodiscard]] static std::optional<KeyRing> open(const KeyBag& bag, const SecretKey& passwordKey);

  /// The key in the 40 bytes of `wrapped`, of a file in a protection class; none when the class's key is not there or
  /// the bytes are damaged.
  [[nodiscard]] std::optional<SecretKey> unwrap(std::uint32_t protectionClass, std::string_view wrapped) const;

 private:
  std::map<std::uint32_t, SecretKey> keys_;
};

}  // namespace chatsum::device
