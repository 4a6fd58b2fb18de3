#include "hosts/device/backup/KeyRing.h"

#include "hosts/device/backup/KeyWrap.h"

namespace chatsum::device {

std::optional<KeyRing> KeyRing::open(const KeyBag& bag, const SecretKey& passwordKey) {
  KeyRing ring;
  for (const WrappedClassKey& wrapped : bag.classKeys) {
    // One that is damaged alone takes only its own files with it.
    if (const auto key = unwrapKey(passwordKey, wrapped.bytes)) ring.keys_.emplace(wrapped.protectionClass, *key);
  }
  if (ring.keys_.empty()) return std::nullopt;
  return ring;
}

std::optional<SecretKey> KeyRing::unwrap(std::uint32_t protectionClass, std::string_view wrapped) const {
  const auto found = keys_.find(protectionClass);
  if (found == keys_.end()) return std::nullopt;
  return unwrapKey(found->second, wrapped);
}

}  // namespace chatsum::device
