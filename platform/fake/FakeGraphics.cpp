#include "platform/fake/FakeGraphics.h"

#include <new>

#include <algorithm>
#include <cmath>

#include "platform/fake/FakeArtwork.h"
#include "platform/foundation/Description.h"
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

std::string pair(double x, double y) { return description::plainDecimal(x) + "," + description::plainDecimal(y); }
std::string sizeText(Size size) {
  return description::plainDecimal(size.width) + "x" + description::plainDecimal(size.height);
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
  drawn.push_back({std::string(text), {at, {width, 0}}, font, mode, TextAlignment::kLeft, color_, page()});
  return lineSize(text, font, width);
}

Size FakeGraphics::drawText(std::string_view text, const Rect& rect, const UIFont& font, LineBreakMode mode,
                            TextAlignment alignment) {
  if (failingText > 0 && drawn.size() >= failingText) throw std::bad_alloc();
  drawn.push_back({std::string(text), rect, font, mode, alignment, color_, page()});
  return textSize(text, font, rect.size);
}

void FakeGraphics::drawImage(const UIImageRef& image, const Rect& rect) {
  if (!surfaces_.empty())
    surfaceSteps.push_back("image " + pair(rect.origin.x, rect.origin.y) + " " + sizeText(rect.size));
  images.push_back({image, rect, page()});
}

void FakeGraphics::beginPDFContextToFile(const std::string& path, const Rect&) {
  pdfPaths.push_back(path);
  if (hasPDF) ++contexts_;
}

void FakeGraphics::endPDFContext() {
  ++endedDocuments;
  --contexts_;
}

void FakeGraphics::abandonPDFContext() noexcept {
  ++abandonedDocuments;
  --contexts_;
}

void FakeGraphics::expectRows(const ExpectedRows& rows, const UIFont&, double) {
  struct Noted final : ExpectedCells {
    explicit Noted(std::vector<std::string>& all) : notes(all) {}
    void text(std::string_view text) override { notes.emplace_back(text); }
    void picture(const std::string& path, double) override { notes.push_back(path); }
    std::vector<std::string>& notes;
  };
  Noted noted(expected);
  const auto reader = rows.reader();
  for (std::size_t row = 0; row < rows.count(); ++row) reader->read(row, noted);
}

void FakeGraphics::beginImageContext(Size size, double scale) {
  surfaceSteps.push_back("begin " + sizeText(size) + "@" + description::plainDecimal(scale));
  surfaces_.push_back(size);
  ++contexts_;
}

UIImageRef FakeGraphics::imageFromCurrentContext() {
  return surfaces_.empty() ? nullptr : std::make_shared<FakeImage>(surfaces_.back());
}

void FakeGraphics::endImageContext() {
  surfaceSteps.emplace_back("end");
  surfaces_.pop_back();
  --contexts_;
}

void FakeGraphics::Context::strokePath() {
  for (std::size_t i = 0; i + 1 < points_.size(); ++i) {
    owner_.lines.push_back({points_[i], points_[i + 1], width_, color_, owner_.page()});
  }
  points_.clear();
}

void FakeGraphics::Context::translate(double x, double y) { owner_.surfaceSteps.push_back("translate " + pair(x, y)); }
void FakeGraphics::Context::scale(double x, double y) { owner_.surfaceSteps.push_back("scale " + pair(x, y)); }
void FakeGraphics::Context::drawPDFPage(const PDFPage&) { owner_.surfaceSteps.emplace_back("page"); }

}  // namespace chatsum::platform::fake
