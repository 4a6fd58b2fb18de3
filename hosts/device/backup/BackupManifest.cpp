#include "hosts/device/backup/BackupManifest.h"

namespace chatsum::device {

std::string wrappedKeyOf(std::string_view bytes, std::uint32_t& protectionClass) {
  constexpr std::size_t kClassLength = 4, kWrappedLength = 40;
  if (bytes.size() != kClassLength + kWrappedLength) return {};
  protectionClass = 0;
  for (std::size_t i = kClassLength; i-- > 0;) {
    protectionClass = (protectionClass << 8U) | static_cast<std::uint8_t>(bytes[i]);
  }
  return std::string(bytes.substr(kClassLength));
}

}  // namespace chatsum::device
