// The place of the drawing service, which this build does not have: no PDF document can be begun, and no text has a
// size. Any thread.
#pragma once

#include "platform/interfaces/Graphics.h"

namespace chatsum::platform::system {

class SystemGraphics final : public Graphics {
 public:
  /// A zero size: nothing here can measure text.
  [[nodiscard]] Size sizeOfText(std::string_view text, const UIFont& font, Size limit, LineBreakMode mode) override;
  /// As `sizeOfText`.
  [[nodiscard]] Size sizeOfLine(std::string_view text, const UIFont& font, double width, LineBreakMode mode) override;
  /// Draws nothing and says so with a zero size.
  Size drawLine(std::string_view text, Point at, double width, const UIFont& font, LineBreakMode mode) override;
  /// As `drawLine`.
  Size drawText(std::string_view text, const Rect& rect, const UIFont& font, LineBreakMode mode,
                TextAlignment alignment) override;
  /// Always false; the path is not touched.
  [[nodiscard]] bool beginPDFContext(const std::string& path) override;
};

}  // namespace chatsum::platform::system
