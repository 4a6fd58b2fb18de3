// The font file of one face that a document embeds, with the glyphs that it shows: shared by the fonts that are made of
// the face. One thread at a time; the face must outlive it.
#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "platform/system/pdf/CffCharset.h"
#include "platform/system/pdf/PdfFile.h"
#include "platform/system/pdf/StreamQueue.h"
#include "platform/system/text/FontFace.h"

namespace chatsum::platform::system {

class FontProgram {
 public:
  explicit FontProgram(const FontFace& face);

  [[nodiscard]] const FontFace& face() const { return face_; }
  void use(std::uint32_t glyph) { glyphs_.insert(glyph); }
  /// A printable ASCII character that is shown by its own code.
  void useAscii(char character);

  /// What names a glyph in text of two bytes a glyph.
  [[nodiscard]] std::uint16_t codeOf(std::uint32_t glyph) const;
  /// In hundredths of a thousandth of the font size, as all widths are written.
  [[nodiscard]] int widthOf(std::uint32_t glyph) const;

  // When all glyphs are known.

  /// The face's name behind a tag that tells subsets apart.
  [[nodiscard]] std::string name() const;
  /// Answers the object of the font descriptor.
  int write(PdfFile& file, StreamQueue& queue) const;

 private:
  const FontFace& face_;
  std::optional<CffCharset> charset_;
  std::set<std::uint32_t> glyphs_;
  std::bitset<128> ascii_;
};

}  // namespace chatsum::platform::system
