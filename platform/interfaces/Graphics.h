// Measuring and drawing. Text, lines and pictures go on the pages of a PDF document; an offscreen surface takes
// pictures and pages of documents, all else drawn there is lost. Text is UTF-8, lengths are points, y grows downwards.
// Contexts belong to the thread that begins them, the newest is the current one; without a current context drawing does
// nothing. Measuring may be done on any thread.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "platform/foundation/Geometry.h"
#include "platform/interfaces/Artwork.h"

namespace chatsum::platform {

/// A font by name and size; the empty name is the system's own font.
struct UIFont {
  std::string name;
  double size = 0;
  friend bool operator==(const UIFont&, const UIFont&) = default;
};

enum class LineBreakMode {
  kWordWrap = 0,
  kCharacterWrap = 1,
  kClip = 2,
  kHeadTruncation = 3,
  kTailTruncation = 4,
  kMiddleTruncation = 5
};
enum class TextAlignment { kLeft = 0, kCenter = 1, kRight = 2 };

/// Red, green and blue from 0 to 1.
struct Color {
  double red = 0, green = 0, blue = 0;
  friend bool operator==(const Color&, const Color&) = default;
};
inline constexpr Color kBlackColor{0, 0, 0};
inline constexpr Color kBlueColor{0, 0, 1};
inline constexpr Color kDarkGrayColor{1.0 / 3, 1.0 / 3, 1.0 / 3};

/// Where lines and the pages of other documents are drawn. One thread at a time; ends with its context.
class GraphicsContext {
 public:
  virtual ~GraphicsContext() = default;
  virtual void setStrokeColor(const Color& color) = 0;
  virtual void setLineWidth(double width) = 0;
  virtual void moveTo(Point point) = 0;
  virtual void addLineTo(Point point) = 0;
  /// Strokes the path and forgets it.
  virtual void strokePath() = 0;

  // On surfaces only.

  /// Moves and scales the coordinates of what is drawn from here on.
  virtual void translate(double x, double y) = 0;
  virtual void scale(double x, double y) = 0;
  /// Draws a page in the document's own coordinates, y growing upwards.
  virtual void drawPDFPage(const PDFPage& page) = 0;
};

/// Takes what a row is going to measure and draw, cell by cell.
class ExpectedCells {
 public:
  virtual ~ExpectedCells() = default;
  virtual void text(std::string_view text) = 0;
  /// A file that will be read as a picture, of which a square of that side (points) will be drawn.
  virtual void picture(const std::string& path, double side) = 0;
};

/// Reads the rows that are going to be drawn. One thread at a time.
class ExpectedRowReader {
 public:
  virtual ~ExpectedRowReader() = default;
  virtual void read(std::size_t row, ExpectedCells& cells) = 0;
};

/// The rows of a report that is going to be drawn, in order.
class ExpectedRows {
 public:
  virtual ~ExpectedRows() = default;
  [[nodiscard]] virtual std::size_t count() const = 0;
  /// A reader for one thread; called on any thread.
  [[nodiscard]] virtual std::unique_ptr<ExpectedRowReader> reader() const = 0;
};

class Graphics {
 public:
  virtual ~Graphics() = default;

  // Text. An empty text has no size.

  /// The size the text takes inside the limits.
  [[nodiscard]] virtual Size sizeOfText(std::string_view text, const UIFont& font, Size limit, LineBreakMode mode) = 0;
  /// The size of the text on a single line no wider than `width`.
  [[nodiscard]] virtual Size sizeOfLine(std::string_view text, const UIFont& font, double width,
                                        LineBreakMode mode) = 0;
  /// Draws one line into the current context and answers the size drawn.
  virtual Size drawLine(std::string_view text, Point at, double width, const UIFont& font, LineBreakMode mode) = 0;
  /// Draws text inside a rectangle of the current context and answers the size drawn.
  virtual Size drawText(std::string_view text, const Rect& rect, const UIFont& font, LineBreakMode mode,
                        TextAlignment alignment) = 0;

  // The current context.

  /// nullptr when there is none.
  [[nodiscard]] virtual GraphicsContext* currentContext() = 0;
  /// The colour of text from here on, also on later pages; black in a new context.
  virtual void setColor(const Color& color) = 0;
  /// Draws a picture stretched into the rectangle; nothing for nullptr.
  virtual void drawImage(const UIImageRef& image, const Rect& rect) = 0;

  // PDF documents.

  /// Opens a PDF document at the path and makes it the current context. When that fails there is no new context.
  virtual void beginPDFContextToFile(const std::string& path, const Rect& bounds) = 0;
  /// Begins a page of the current document.
  virtual void beginPDFPage(const Rect& bounds) = 0;
  /// Ends the current document and writes what is left of it.
  virtual void endPDFContext() = 0;
  /// Ends the current document without writing what is left of it: for one that was given up. Nothing that was handed
  /// in is used any more.
  virtual void abandonPDFContext() noexcept = 0;
  /// A hint that the rows will be measured and drawn next in the current document, texts in that font within that
  /// width, word-wrapped: a platform may prepare them ahead on other threads. What is drawn is the same without it. The
  /// rows must live until the context ends.
  virtual void expectRows(const ExpectedRows& rows, const UIFont& font, double width) = 0;

  // Offscreen surfaces.

  /// Opens a transparent surface of that size and makes it the current context. `scale` is pixels per point.
  virtual void beginImageContext(Size size, double scale) = 0;
  /// What is on the current surface; nullptr when the current context is none.
  [[nodiscard]] virtual UIImageRef imageFromCurrentContext() = 0;
  virtual void endImageContext() = 0;
};

}  // namespace chatsum::platform
