// Which characters a CID-keyed CFF font calls its glyphs (Adobe Technical Note 5176): PDF text names them, not the
// glyphs' own numbers. Immutable once made, any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace chatsum::platform::system {

class CffCharset {
 public:
  /// Reads a "CFF " table; none when the font is not CID-keyed, or damaged.
  [[nodiscard]] static std::optional<CffCharset> read(std::span<const std::uint8_t> table, std::uint32_t glyphs);

  /// 0 for a glyph the font does not have.
  [[nodiscard]] std::uint16_t characterOf(std::uint32_t glyph) const {
    return glyph < characters_.size() ? characters_[glyph] : std::uint16_t{0};
  }

 private:
  std::vector<std::uint16_t> characters_;  ///< by glyph
};

}  // namespace chatsum::platform::system
