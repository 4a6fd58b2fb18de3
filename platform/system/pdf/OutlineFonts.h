// Fonts of embedded outlines. One thread at a time; the program must outlive them.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <map>
#include <string>

#include "platform/system/pdf/FontProgram.h"
#include "platform/system/pdf/PdfFont.h"

namespace chatsum::platform::system {

/// Printable ASCII characters of a TrueType face, one byte each, which is their code.
class SimpleFont final : public PdfFont {
 public:
  SimpleFont(std::uint16_t number, int object, FontProgram& program);

  void use(char character);
  /// Of a character in hundredths of a thousandth of the font size.
  [[nodiscard]] int widthOf(char character) const { return widths_[static_cast<unsigned char>(character) & 0x7F]; }
  void appendCode(std::string& to, std::uint16_t code) const override;
  void write(PdfFile& file, int descriptor, int asciiMap) const;

 private:
  FontProgram& program_;
  std::array<int, 128> widths_{};
  std::bitset<128> used_;
};

/// Any glyphs of a face, two bytes each.
class CompositeFont final : public PdfFont {
 public:
  CompositeFont(std::uint16_t number, int object, FontProgram& program);

  /// Answers the glyph's code.
  std::uint16_t use(std::uint32_t glyph);
  void appendCode(std::string& to, std::uint16_t code) const override;
  void write(PdfFile& file, int descriptor) const;

 private:
  [[nodiscard]] std::string widths() const;

  FontProgram& program_;
  std::map<std::uint16_t, int> widths_;  ///< by code
};

}  // namespace chatsum::platform::system
