// Text measuring and drawing: each operation is the platform's own with the same arguments.

#include <string>

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {

using platform::LineBreakMode;
using platform::TextAlignment;
using platform::UIFont;

Size CSReportsGenerator::sizeForString(std::string_view text, const UIFont& font, Size constrainedToSize) {
  return sizeForString(text, font, constrainedToSize, LineBreakMode::kWordWrap);
}

Size CSReportsGenerator::sizeForString(std::string_view text, const UIFont& font, Size constrainedToSize,
                                       LineBreakMode lineBreakMode) {
  return platform::current().graphics.sizeOfText(text, font, constrainedToSize, lineBreakMode);
}

Size CSReportsGenerator::sizeForString(std::string_view text, const UIFont& font, double forWidth,
                                       LineBreakMode lineBreakMode) {
  return platform::current().graphics.sizeOfLine(text, font, forWidth, lineBreakMode);
}

Size CSReportsGenerator::drawString(std::string_view text, Point atPoint, double forWidth, const UIFont& font,
                                    LineBreakMode lineBreakMode) {
  return platform::current().graphics.drawLine(text, atPoint, forWidth, font, lineBreakMode);
}

Size CSReportsGenerator::drawString(std::string_view text, const Rect& inRect, const UIFont& font) {
  return drawString(text, inRect, font, LineBreakMode::kWordWrap, TextAlignment::kLeft);
}

Size CSReportsGenerator::drawString(std::string_view text, const Rect& inRect, const UIFont& font,
                                    LineBreakMode lineBreakMode, TextAlignment alignment) {
  return platform::current().graphics.drawText(text, inRect, font, lineBreakMode, alignment);
}

void CSReportsGenerator::drawPageNumber(std::int64_t pageNumber) {
  constexpr double kPageWidth = 762, kAreaHeight = 72, kTop = 720, kFontSize = 12;
  const UIFont systemFont{"", kFontSize};
  const std::string text = std::to_string(pageNumber);
  const Size size = sizeForString(text, systemFont, {kPageWidth, kAreaHeight}, LineBreakMode::kClip);
  const Rect place{{(kPageWidth - size.width) / 2, kTop + size.height / 2}, size};
  drawString(text, place, systemFont);
}

}  // namespace chatsum
