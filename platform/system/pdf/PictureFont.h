// A Type 3 font (ISO 32000-1, 9.6.5) whose glyphs are pictures, so that colour emoji are text. One thread at a time.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/system/pdf/PdfFont.h"
#include "platform/system/text/FontFace.h"

namespace chatsum::platform::system {

class PictureFont final : public PdfFont {
 public:
  /// The face must outlive the font.
  PictureFont(std::uint16_t number, int object, const FontFace& face);

  /// The glyph's code. A new one gets the next free code, and its picture is put into the queue; none when the font is
  /// full.
  std::optional<std::uint16_t> use(std::uint32_t glyph, PdfFile& file, StreamQueue& queue);
  void appendCode(std::string& to, std::uint16_t code) const override;
  /// The queue must be finished.
  void write(PdfFile& file) const;

 private:
  struct Entry {
    std::uint32_t glyph;
    std::uint16_t code;
    int procedure = 0, image = 0;  ///< objects; 0: none
    bool isDrawn = false;          ///< its picture could be read; known when the queue is finished
  };
  void queuePicture(const std::shared_ptr<Entry>& entry, PdfFile& file, StreamQueue& queue) const;
  /// Writes the procedure of a glyph that shows nothing; answers its object.
  static int writeEmpty(PdfFile& file, int width);
  /// In hundredths of a thousandth of the font size.
  [[nodiscard]] int widthOf(std::uint32_t glyph) const;

  const FontFace& face_;
  std::vector<std::shared_ptr<Entry>> entries_;   ///< in the order of their first showing
  std::map<std::uint32_t, std::uint16_t> codes_;  ///< by glyph
};

}  // namespace chatsum::platform::system
