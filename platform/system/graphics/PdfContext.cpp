#include "platform/system/graphics/PdfContext.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace chatsum::platform::system {
namespace {

Size within(Size size, Size limit) { return {std::min(size.width, limit.width), std::min(size.height, limit.height)}; }

double shiftOf(TextAlignment alignment) {
  switch (alignment) {
    case TextAlignment::kLeft:
      return 0;
    case TextAlignment::kCenter:
      return 0.5;
    case TextAlignment::kRight:
      return 1;
  }
  return 0;
}

/// The layout without the lines that begin below a height.
TextLayout linesWithin(TextLayout layout, double height) {
  double top = 0;
  std::size_t lines = 0;
  while (lines < layout.lines.size() && top < height) top += layout.lines[lines++].height;
  layout.lines = layout.lines.first(lines);
  return layout;
}

}  // namespace

PdfContext::PdfContext(std::unique_ptr<FileHandle> file, std::unique_ptr<TextEngine> engine, DocumentFacts facts)
    : engine_(std::move(engine)), document_(std::move(file), pool_) {
  document_.describe(std::move(facts));
}

Size PdfContext::measure(std::string_view text, const UIFont& font, Size limit, LineBreakMode mode) {
  if (ahead_ && mode == LineBreakMode::kWordWrap) {
    expected_ = ahead_->take(text, font, limit.width);
    if (expected_) return within(expected_->layout.size, limit);
  }
  return within(memo_.entryFor(text, font, limit.width, mode, false, *engine_).layout().size, limit);
}

Size PdfContext::measureLine(std::string_view text, const UIFont& font, double width, LineBreakMode mode) {
  return memo_.entryFor(text, font, width, mode, true, *engine_).layout().size;
}

Size PdfContext::draw(std::string_view text, const Rect& rect, const UIFont& font, LineBreakMode mode,
                      TextAlignment alignment) {
  // At the width that it takes a text breaks as it did when it was measured.
  if (expected_ && mode == LineBreakMode::kWordWrap && expected_->layout.size.width == rect.size.width &&
      expected_->text == text && ahead_->isOf(font)) {
    show(expected_->layout, rect, alignment);
    return within(expected_->layout.size, rect.size);
  }
  LayoutMemo::Entry& entry = memo_.entryFor(text, font, rect.size.width, mode, false, *engine_);
  showOnce(entry, rect, alignment);
  return within(entry.layout().size, rect.size);
}

Size PdfContext::drawLine(std::string_view text, Point at, double width, const UIFont& font, LineBreakMode mode) {
  LayoutMemo::Entry& entry = memo_.entryFor(text, font, width, mode, true, *engine_);
  const Size size = entry.layout().size;
  showOnce(entry, {at, {width, size.height}}, TextAlignment::kLeft);
  return size;
}

void PdfContext::beginPage(const Rect& bounds) {
  document_.beginPage(bounds);
  ++page_;
}

void PdfContext::drawBitmap(const Bitmap& bitmap, const Rect& rect) {
  document_.drawBitmap(bitmap, rect);
  memo_.forgetDrawingsIn(rect);
}

void PdfContext::expectRows(const ExpectedRows& rows, const UIFont& font, double width, RowsAhead::Hooks hooks) {
  expected_.reset();
  ahead_.emplace(rows, font, width, *engine_, pool_, std::move(hooks));
}

std::optional<Error> PdfContext::finish() {
  expected_.reset();
  ahead_.reset();
  return document_.finish();
}

void PdfContext::addLineTo(Point point) {
  path_.push_back({pathAt_, point});
  pathAt_ = point;
}

void PdfContext::strokePath() {
  for (const auto& [from, to] : path_) {
    document_.strokeLine(from, to, lineWidth_, strokeColor_);
    memo_.forgetDrawingsIn({{std::min(from.x, to.x) - lineWidth_, std::min(from.y, to.y) - lineWidth_},
                            {std::abs(to.x - from.x) + 2 * lineWidth_, std::abs(to.y - from.y) + 2 * lineWidth_}});
  }
  path_.clear();
}

void PdfContext::showOnce(LayoutMemo::Entry& entry, const Rect& rect, TextAlignment alignment) {
  const LayoutMemo::Drawing drawing{page_, rect, color_, alignment};
  if (entry.lastDrawing == drawing) return;
  entry.lastDrawing = drawing;
  show(entry.layout(), rect, alignment);
}

void PdfContext::show(const TextLayout& layout, const Rect& rect, TextAlignment alignment) {
  if (page_ == 0) return;
  const TextLayout shown = linesWithin(layout, rect.size.height);
  document_.showText(shown, rect.origin, rect.size.width, shiftOf(alignment), color_);
  addUnshown(shown, unshown_);
}

}  // namespace chatsum::platform::system
