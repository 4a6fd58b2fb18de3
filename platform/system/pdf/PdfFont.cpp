#include "platform/system/pdf/PdfFont.h"

#include "platform/system/pdf/PdfSyntax.h"

namespace chatsum::platform::system {

void PdfFont::setSpace(std::uint16_t code) {
  texts_.means(code, " ");
  space_ = {};
  appendCode(space_.bytes, code);
}

void PdfFont::setSpaceOfWidth(int width) {
  space_ = {")", true};
  pdf::appendInteger(space_.bytes, -(width + 50) / 100);
  space_.bytes += '(';
}

}  // namespace chatsum::platform::system
