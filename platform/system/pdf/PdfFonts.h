// The fonts of a document: for each face up to one of one-byte ASCII and one of two-byte glyphs, which share the
// embedded file, and as many of pictures as it takes. Numbered in the order of their first use, so the same document
// has the same fonts each time. One thread at a time; the faces must outlive it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/system/pdf/OutlineFonts.h"
#include "platform/system/pdf/PdfFile.h"
#include "platform/system/pdf/PictureFont.h"
#include "platform/system/pdf/StreamQueue.h"

namespace chatsum::platform::system {

/// What shows a glyph. `width` is in hundredths of a thousandth of the font size.
struct GlyphCode {
  PdfFont* font = nullptr;
  std::uint16_t code = 0;
  int width = 0;
};

class PdfFonts {
 public:
  /// File and queue must outlive it.
  PdfFonts(PdfFile& file, StreamQueue& queue) : file_(file), queue_(queue) {}

  /// The font that shows a face's ASCII characters by themselves; nullptr when the face is not made for it.
  [[nodiscard]] SimpleFont* simple(const FontFace& face);
  [[nodiscard]] GlyphCode glyph(const FontFace& face, std::uint32_t glyph);
  /// The font that shows the face's spaces where nothing else of it stands.
  [[nodiscard]] const PdfFont& forSpaces(const FontFace& face);

  [[nodiscard]] const PdfFont& operator[](std::uint16_t number) const { return *fonts_[number]; }

  /// Writes the fonts. Answers the inside of the dictionary that names them as resources: "/F" and the number.
  [[nodiscard]] std::string write();

 private:
  /// The fonts made of one face.
  struct OfFace {
    std::unique_ptr<FontProgram> program;
    SimpleFont* simple = nullptr;
    CompositeFont* composite = nullptr;
    std::vector<PictureFont*> pictures;
  };
  OfFace& of(const FontFace& face);
  CompositeFont& composite(const FontFace& face);
  GlyphCode picture(const FontFace& face, std::uint32_t glyph);
  template <typename Font, typename Source>
  Font* make(Source& source);

  PdfFile& file_;
  StreamQueue& queue_;
  std::vector<std::unique_ptr<OfFace>> faces_;  ///< in the order of their first use
  std::unordered_map<const FontFace*, OfFace*> known_;
  std::vector<std::unique_ptr<PdfFont>> fonts_;  ///< by number
};

}  // namespace chatsum::platform::system
