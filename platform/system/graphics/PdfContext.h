// A PDF document as the current context: measures text, draws on its pages, and looks ahead when rows are expected. The
// thread that begins it uses it.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/interfaces/Graphics.h"
#include "platform/system/graphics/LayoutMemo.h"
#include "platform/system/graphics/RowsAhead.h"
#include "platform/system/graphics/UnshownCharacters.h"
#include "platform/system/pdf/PdfDocument.h"
#include "platform/system/text/TextEngine.h"
#include "platform/system/work/WorkPool.h"

namespace chatsum::platform::system {

class PdfContext final : public GraphicsContext {
 public:
  PdfContext(std::unique_ptr<FileHandle> file, std::unique_ptr<TextEngine> engine, DocumentFacts facts);

  [[nodiscard]] Size measure(std::string_view text, const UIFont& font, Size limit, LineBreakMode mode);
  [[nodiscard]] Size measureLine(std::string_view text, const UIFont& font, double width, LineBreakMode mode);
  Size draw(std::string_view text, const Rect& rect, const UIFont& font, LineBreakMode mode, TextAlignment alignment);
  Size drawLine(std::string_view text, Point at, double width, const UIFont& font, LineBreakMode mode);
  void drawBitmap(const Bitmap& bitmap, const Rect& rect);
  void setColor(const Color& color) { color_ = color; }
  void beginPage(const Rect& bounds);
  void expectRows(const ExpectedRows& rows, const UIFont& font, double width, RowsAhead::Hooks hooks);
  /// Writes what is left. Answers the first error of a write.
  [[nodiscard]] std::optional<Error> finish();
  [[nodiscard]] bool expectsRows() const { return ahead_.has_value(); }
  /// Of the texts that were shown so far.
  [[nodiscard]] const UnshownCharacters& unshown() const { return unshown_; }

  void setStrokeColor(const Color& color) override { strokeColor_ = color; }
  void setLineWidth(double width) override { lineWidth_ = width; }
  void moveTo(Point point) override { pathAt_ = point; }
  void addLineTo(Point point) override;
  void strokePath() override;
  void translate(double, double) override {}
  void scale(double, double) override {}
  void drawPDFPage(const PDFPage&) override {}

 private:
  struct Segment {
    Point from, to;
  };

  /// Leaves out what stands on the page in the same place already.
  void showOnce(LayoutMemo::Entry& entry, const Rect& rect, TextAlignment alignment);
  void show(const TextLayout& layout, const Rect& rect, TextAlignment alignment);

  WorkPool pool_;
  std::unique_ptr<TextEngine> engine_;
  PdfDocument document_;
  LayoutMemo memo_;
  std::optional<RowsAhead> ahead_;
  std::optional<RowsAhead::Text> expected_;  // measured last, drawn next
  std::size_t page_ = 0;
  UnshownCharacters unshown_;
  Color color_, strokeColor_;
  double lineWidth_ = 1;
  Point pathAt_;
  std::vector<Segment> path_;
};

}  // namespace chatsum::platform::system
