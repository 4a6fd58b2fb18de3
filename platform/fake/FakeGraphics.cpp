#include "platform/fake/FakeGraphics.h"

#include <algorithm>
#include <cmath>

#include "platform/foundation/Utf8.h"

namespace chatsum::platform::fake {
namespace {

double widthOf(std::string_view text, const UIFont& font) {
  return static_cast<double>(utf8::utf16Length(text)) * font.size / 2;
}

Size textSize(std::string_view text, const UIFont& font, Size limit) {
  const double width = widthOf(text, font);
  if (width <= 0 || limit.width <= 0) return {};
  const double lines = std::ceil(width / limit.width);
  return {std::min(width, limit.width), std::min(lines * font.size, limit.height)};
}

Size lineSize(std::string_view text, const UIFont& font, double width) {
  if (text.empty()) return {};
  return {std::min(widthOf(text, font), width), font.size};
}

}  // namespace

Size FakeGraphics::sizeOfText(std::string_view text, const UIFont& font, Size limit, LineBreakMode mode) {
  measured.push_back({std::string(text), font, limit, mode});
  return textSize(text, font, limit);
}

Size FakeGraphics::sizeOfLine(std::string_view text, const UIFont& font, double width, LineBreakMode mode) {
  measured.push_back({std::string(text), font, {width, 0}, mode});
  return lineSize(text, font, width);
}

Size FakeGraphics::drawLine(std::string_view text, Point at, double width, const UIFont& font, LineBreakMode mode) {
  drawn.push_back({std::string(text), {at, {width, 0}}, font, mode, TextAlignment::kLeft});
  return lineSize(text, font, width);
}

Size FakeGraphics::drawText(std::string_view text, const Rect& rect, const UIFont& font, LineBreakMode mode,
                            TextAlignment alignment) {
  drawn.push_back({std::string(text), rect, font, mode, alignment});
  return textSize(text, font, rect.size);
}

bool FakeGraphics::beginPDFContext(const std::string& path) {
  pdfPaths.push_back(path);
  return hasPDF;
}

}  // namespace chatsum::platform::fake
