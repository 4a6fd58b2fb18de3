// Measuring and drawing. Text is UTF-8, lengths are points.
#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/Geometry.h"

namespace chatsum::platform {

/// A font by name and size; the empty name is the system's own font.
struct UIFont {
  std::string name;
  double size = 0;
  friend bool operator==(const UIFont&, const UIFont&) = default;
};

enum class LineBreakMode { kWordWrap = 0, kCharacterWrap = 1, kClip = 2, kHeadTruncation = 3, kTailTruncation = 4, kMiddleTruncation = 5 };
enum class TextAlignment { kLeft = 0, kCenter = 1, kRight = 2 };

class Graphics {
 public:
  virtual ~Graphics() = default;

  /// The size the text takes inside the limits.
  [[nodiscard]] virtual Size sizeOfText(std::string_view text, const UIFont& font, Size limit, LineBreakMode mode) = 0;
  /// The size of the text on a single line no wider than `width`.
  [[nodiscard]] virtual Size sizeOfLine(std::string_view text, const UIFont& font, double width, LineBreakMode mode) = 0;
  /// Draws one line into the current context and answers the size drawn.
  virtual Size drawLine(std::string_view text, Point at, double width, const UIFont& font, LineBreakMode mode) = 0;
  /// Draws text inside a rectangle of the current context and answers the size drawn.
  virtual Size drawText(std::string_view text, const Rect& rect, const UIFont& font, LineBreakMode mode,
                        TextAlignment alignment) = 0;

  /// Opens a PDF document at the path and makes it this thread's current context. False when there is none.
  [[nodiscard]] virtual bool beginPDFContext(const std::string& path) = 0;
};

}  // namespace chatsum::platform
