// Turns characters into glyphs with HarfBuzz. One thread at a time.
#pragma once

#include <hb.h>

#include <memory>
#include <string_view>
#include <vector>

#include "platform/system/text/TextLayout.h"

namespace chatsum::platform::system {

/// What decides the glyphs of a piece. Two pieces of the same text differ when anything of it does.
struct PieceStyle {
  const FontFace* face = nullptr;
  hb_script_t script = HB_SCRIPT_COMMON;
  hb_language_t language = HB_LANGUAGE_INVALID;
  bool isRightToLeft = false;
  friend bool operator==(const PieceStyle&, const PieceStyle&) = default;
};

class Shaper {
 public:
  Shaper();
  /// The glyphs from left to right, valid until the next call. Ligatures that are no matter of reading ("fi") are not
  /// formed in Latin, Greek and Cyrillic; characters that show nothing have no glyph. The text is valid UTF-8.
  [[nodiscard]] std::span<const Glyph> shape(const PieceStyle& style, std::string_view text);
  /// The sum of the advances, font units.
  [[nodiscard]] std::int64_t measure(const PieceStyle& style, std::string_view text);

 private:
  struct Destroy {
    void operator()(hb_buffer_t* buffer) const { hb_buffer_destroy(buffer); }
  };
  std::unique_ptr<hb_buffer_t, Destroy> buffer_;
  std::vector<Glyph> glyphs_;
};

/// The sum of the advances of these glyphs, never negative.
[[nodiscard]] std::int64_t widthOf(std::span<const Glyph> glyphs);

}  // namespace chatsum::platform::system
