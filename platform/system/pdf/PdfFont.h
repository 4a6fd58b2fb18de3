// A font as the text of a document selects it (ISO 32000-1, 9.5 to 9.7): which codes it has, how wide they are and what
// they stand for. One thread at a time.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/system/pdf/PdfFile.h"
#include "platform/system/pdf/StreamQueue.h"
#include "platform/system/pdf/ToUnicode.h"

namespace chatsum::platform::system {

/// One space between words.
struct FontSpace {
  std::string bytes;        ///< inside a literal string
  bool isAdjusted = false;  ///< the bytes leave the string to move, which only "TJ" understands
};

class PdfFont {
 public:
  /// `number` counts the fonts of the document, `object` is the one of its dictionary.
  PdfFont(std::uint16_t number, int object) : number_(number), object_(object) {}
  virtual ~PdfFont() = default;
  PdfFont(const PdfFont&) = delete;
  PdfFont& operator=(const PdfFont&) = delete;

  [[nodiscard]] std::uint16_t number() const { return number_; }
  [[nodiscard]] int object() const { return object_; }
  [[nodiscard]] const FontSpace& space() const { return space_; }
  [[nodiscard]] ToUnicode& texts() { return texts_; }
  [[nodiscard]] const ToUnicode& texts() const { return texts_; }
  /// Appends a code to the inside of a literal string.
  virtual void appendCode(std::string& to, std::uint16_t code) const = 0;

 protected:
  /// The space as that code, or as a move when it has none; then `width` is that of a space, as FontProgram counts it.
  void setSpace(std::uint16_t code);
  void setSpaceOfWidth(int width);

 private:
  std::uint16_t number_;
  int object_;
  FontSpace space_;
  ToUnicode texts_;
};

}  // namespace chatsum::platform::system
