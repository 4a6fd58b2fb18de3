// Catalogue files made by hand, also ones that msgfmt would never write.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace chatsum::test {

inline std::string number32(std::uint32_t value, bool isBigEndian) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>(value >> (isBigEndian ? 24 - 8 * i : 8 * i) & 0xFFU);
  return bytes;
}

/// The texts in the order given, without a table of hashes.
inline std::string moFile(const std::vector<std::pair<std::string, std::string>>& texts, bool isBigEndian = false,
                          std::uint32_t revision = 0) {
  const auto count = static_cast<std::uint32_t>(texts.size());
  constexpr std::uint32_t kHeader = 28;
  const std::uint32_t end = kHeader + 16 * count;
  std::string originals, translations, pool;
  const auto entry = [&](const std::string& text) {
    const auto at = end + static_cast<std::uint32_t>(pool.size());
    pool += text + '\0';
    return number32(static_cast<std::uint32_t>(text.size()), isBigEndian) + number32(at, isBigEndian);
  };
  for (const auto& [original, translation] : texts) {
    originals += entry(original);
    translations += entry(translation);
  }
  std::string bytes;
  for (const std::uint32_t value : {0x950412deU, revision, count, kHeader, kHeader + 8 * count, 0U, end}) {
    bytes += number32(value, isBigEndian);
  }
  return bytes + originals + translations + pool;
}

}  // namespace chatsum::test
