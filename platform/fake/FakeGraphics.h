// Measuring by a simple rule, and drawing that is only written down. One thread at a time.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/interfaces/Graphics.h"

namespace chatsum::platform::fake {

/// One drawing operation as it was asked for. `page` counts from 1; 0 is before the first one, or a surface.
struct DrawnText {
  std::string text;
  Rect rect;  ///< of a line: its point and width, no height
  UIFont font;
  LineBreakMode mode = LineBreakMode::kWordWrap;
  TextAlignment alignment = TextAlignment::kLeft;
  Color color;
  std::size_t page = 0;
};
struct DrawnImage {
  UIImageRef image;
  Rect rect;
  std::size_t page = 0;
};
struct StrokedLine {
  Point from, to;
  double width = 0;
  Color color;
  std::size_t page = 0;
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
  bool hasPDF = true;           ///< whether a PDF context can be opened
  std::size_t failingText = 0;  ///< that many texts can be drawn in a rectangle before memory is short; 0: all
  std::vector<DrawnText> drawn;
  std::vector<MeasuredText> measured;
  std::vector<DrawnImage> images;  ///< nullptr included
  std::vector<StrokedLine> lines;
  std::vector<std::string> pdfPaths;      ///< of every beginPDFContextToFile
  std::vector<Rect> pages;                ///< bounds of every page
  std::size_t endedDocuments = 0;         ///< every endPDFContext
  std::size_t abandonedDocuments = 0;     ///< every abandonPDFContext
  std::vector<std::string> expected;      ///< texts and picture paths of the rows to come, read at once
  std::vector<std::string> surfaceSteps;  ///< "begin 64x64@1", "translate 0,100", "page", "image 0,0 64x64", "end" …

  [[nodiscard]] Size sizeOfText(std::string_view text, const UIFont& font, Size limit, LineBreakMode mode) override;
  [[nodiscard]] Size sizeOfLine(std::string_view text, const UIFont& font, double width, LineBreakMode mode) override;
  Size drawLine(std::string_view text, Point at, double width, const UIFont& font, LineBreakMode mode) override;
  Size drawText(std::string_view text, const Rect& rect, const UIFont& font, LineBreakMode mode,
                TextAlignment alignment) override;
  [[nodiscard]] GraphicsContext* currentContext() override { return contexts_ == 0 ? nullptr : &context_; }
  void setColor(const Color& color) override { color_ = color; }
  void drawImage(const UIImageRef& image, const Rect& rect) override;
  void beginPDFContextToFile(const std::string& path, const Rect& bounds) override;
  void beginPDFPage(const Rect& bounds) override { pages.push_back(bounds); }
  void endPDFContext() override;
  void abandonPDFContext() noexcept override;
  void expectRows(const ExpectedRows& rows, const UIFont& font, double width) override;
  void beginImageContext(Size size, double scale) override;
  /// A picture of which only the size is known.
  [[nodiscard]] UIImageRef imageFromCurrentContext() override;
  void endImageContext() override;

 private:
  class Context final : public GraphicsContext {
   public:
    explicit Context(FakeGraphics& owner) : owner_(owner) {}
    void setStrokeColor(const Color& color) override { color_ = color; }
    void setLineWidth(double width) override { width_ = width; }
    void moveTo(Point point) override { points_.push_back(point); }
    void addLineTo(Point point) override { points_.push_back(point); }
    void strokePath() override;
    void translate(double x, double y) override;
    void scale(double x, double y) override;
    void drawPDFPage(const PDFPage& page) override;

   private:
    FakeGraphics& owner_;
    Color color_;
    double width_ = 1;
    std::vector<Point> points_;
  };

  [[nodiscard]] std::size_t page() const { return surfaces_.empty() ? pages.size() : 0; }

  Context context_{*this};
  std::size_t contexts_ = 0;
  std::vector<Size> surfaces_;
  Color color_;
};

}  // namespace chatsum::platform::fake
