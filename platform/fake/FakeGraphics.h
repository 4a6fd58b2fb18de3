// Measuring by a simple rule, and drawing that is only written down. One thread at a time.
#pragma once

#include <string>
#include <vector>

#include "platform/interfaces/Graphics.h"

namespace chatsum::platform::fake {

/// One drawing operation as it was asked for.
struct DrawnText {
  std::string text;
  Rect rect;  ///< of a line: its point and width, no height
  UIFont font;
  LineBreakMode mode = LineBreakMode::kWordWrap;
  TextAlignment alignment = TextAlignment::kLeft;
};

/// One measuring operation as it was asked for.
struct MeasuredText {
  std::string text;
  UIFont font;
  Size limit;  ///< of a line: its width, no height
  LineBreakMode mode = LineBreakMode::kWordWrap;
};

/// Every UTF-16 unit is half as wide as the font is high; lines break anywhere and stand one font size apart.
class FakeGraphics final : public Graphics {
 public:
  bool hasPDF = false;  ///< what beginPDFContext answers
  std::vector<DrawnText> drawn;
  std::vector<MeasuredText> measured;
  std::vector<std::string> pdfPaths;  ///< of every beginPDFContext

  [[nodiscard]] Size sizeOfText(std::string_view text, const UIFont& font, Size limit, LineBreakMode mode) override;
  [[nodiscard]] Size sizeOfLine(std::string_view text, const UIFont& font, double width, LineBreakMode mode) override;
  Size drawLine(std::string_view text, Point at, double width, const UIFont& font, LineBreakMode mode) override;
  Size drawText(std::string_view text, const Rect& rect, const UIFont& font, LineBreakMode mode,
                TextAlignment alignment) override;
  [[nodiscard]] bool beginPDFContext(const std::string& path) override;
};

}  // namespace chatsum::platform::fake
