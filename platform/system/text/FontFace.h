// One face of a font file. Immutable once made, any thread; lives as long as the library of fonts that opened it.
#pragma once

#include <hb.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace chatsum::platform::system {

class FontFace {
 public:
  /// Reads the face of that number in a file; nullptr when it is no font or must not be embedded.
  [[nodiscard]] static std::unique_ptr<const FontFace> open(const std::string& path, unsigned number);
  ~FontFace();
  FontFace(const FontFace&) = delete;
  FontFace& operator=(const FontFace&) = delete;

  [[nodiscard]] hb_face_t* face() const { return face_; }
  /// At the scale of font units (unitsPerEm by unitsPerEm), unhinted.
  [[nodiscard]] hb_font_t* font() const { return font_; }
  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] const std::string& postScriptName() const { return postScriptName_; }

  [[nodiscard]] int unitsPerEm() const { return unitsPerEm_; }
  /// Above the baseline, below it, and the gap between lines: font units, none negative.
  [[nodiscard]] int ascent() const { return ascent_; }
  [[nodiscard]] int descent() const { return descent_; }
  [[nodiscard]] int lineGap() const { return lineGap_; }

  /// TrueType outlines ("glyf"), or else those of PostScript ("CFF ").
  [[nodiscard]] bool hasTrueTypeOutlines() const { return hasTrueTypeOutlines_; }
  /// Glyphs are small PNG pictures in colour.
  [[nodiscard]] bool hasColorPictures() const { return hasColorPictures_; }

  /// The glyph of a code point, 0 when the face has none.
  [[nodiscard]] std::uint32_t glyphFor(char32_t codePoint) const;
  /// The glyph of a printable ASCII character (0x20 to 0x7E), 0 when the face has none.
  [[nodiscard]] std::uint32_t asciiGlyph(char character) const {
    return asciiGlyphs_[static_cast<std::size_t>(static_cast<unsigned char>(character)) & 0x7F];
  }
  /// Advance of a glyph in font units.
  [[nodiscard]] int advanceOf(std::uint32_t glyph) const;

 private:
  FontFace() = default;

  hb_face_t* face_ = nullptr;
  hb_font_t* font_ = nullptr;
  std::string path_, postScriptName_;
  int unitsPerEm_ = 0, ascent_ = 0, descent_ = 0, lineGap_ = 0;
  bool hasTrueTypeOutlines_ = false, hasColorPictures_ = false;
  std::array<std::uint32_t, 128> asciiGlyphs_{};
};

}  // namespace chatsum::platform::system
