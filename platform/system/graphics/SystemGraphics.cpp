#include "platform/system/graphics/SystemGraphics.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "platform/system/graphics/PdfContext.h"
#include "platform/system/graphics/SurfaceContext.h"
#include "platform/system/images/SystemArtwork.h"
#include "platform/system/images/SystemImage.h"
#include "platform/system/text/TextEngine.h"

namespace chatsum::platform::system {
namespace {

/// The pixels of a picture that a page shows sharply also when it is looked at closely.
constexpr double kMostPixelsPerPoint = 4;

/// One context of a thread: a document or a surface.
struct OpenContext {
  const SystemGraphics* owner = nullptr;
  std::unique_ptr<PdfContext> document;
  std::unique_ptr<SurfaceContext> surface;
  std::optional<ImageMemo::Scope> remembering;  // each picture of a document is decoded once
};

/// The innermost is the current one.
std::vector<OpenContext>& contextsOfThread() {
  thread_local std::vector<OpenContext> contexts;
  return contexts;
}

OpenContext* currentOf(const SystemGraphics* owner) {
  auto& contexts = contextsOfThread();
  const auto found =
      std::find_if(contexts.rbegin(), contexts.rend(), [&](const OpenContext& open) { return open.owner == owner; });
  return found == contexts.rend() ? nullptr : &*found;
}

PdfContext* documentOf(const SystemGraphics* owner) {
  OpenContext* current = currentOf(owner);
  return current ? current->document.get() : nullptr;
}

SurfaceContext* surfaceOf(const SystemGraphics* owner) {
  OpenContext* current = currentOf(owner);
  return current ? current->surface.get() : nullptr;
}

void close(OpenContext* context) {
  auto& contexts = contextsOfThread();
  contexts.erase(contexts.begin() + (context - contexts.data()));
}

PixelSize pixelsFor(const SystemImage& image, Size size) {
  const auto within = [](int pixels, double points) {
    return std::min(pixels, static_cast<int>(std::ceil(std::clamp(points, 1.0, 10'000.0) * kMostPixelsPerPoint)));
  };
  const PixelSize all = image.pixelSize();
  return {within(all.width, size.width), within(all.height, size.height)};
}

}  // namespace

SystemGraphics::SystemGraphics(Files& files, SystemArtwork& artwork) : files_(files), artwork_(artwork) {}

SystemGraphics::~SystemGraphics() = default;

UnshownCharacters SystemGraphics::takeUnshownCharacters() {
  const std::lock_guard lock(mutex_);
  return std::exchange(unshown_, {});
}

TextEngine& SystemGraphics::engine() {
  const std::lock_guard lock(mutex_);
  if (!engine_) engine_ = std::make_unique<TextEngine>();
  return *engine_;
}

Size SystemGraphics::sizeOfText(std::string_view text, const UIFont& font, Size limit, LineBreakMode mode) {
  if (PdfContext* document = documentOf(this)) return document->measure(text, font, limit, mode);
  LayoutStore store;
  engine().layOut(text, font, limit.width, mode, store);
  return {std::min(store[0].size.width, limit.width), std::min(store[0].size.height, limit.height)};
}

Size SystemGraphics::sizeOfLine(std::string_view text, const UIFont& font, double width, LineBreakMode mode) {
  if (PdfContext* document = documentOf(this)) return document->measureLine(text, font, width, mode);
  LayoutStore store;
  engine().layOutLine(text, font, width, mode, store);
  return store[0].size;
}

Size SystemGraphics::drawLine(std::string_view text, Point at, double width, const UIFont& font, LineBreakMode mode) {
  if (PdfContext* document = documentOf(this)) return document->drawLine(text, at, width, font, mode);
  return sizeOfLine(text, font, width, mode);
}

Size SystemGraphics::drawText(std::string_view text, const Rect& rect, const UIFont& font, LineBreakMode mode,
                              TextAlignment alignment) {
  if (PdfContext* document = documentOf(this)) return document->draw(text, rect, font, mode, alignment);
  return sizeOfText(text, font, rect.size, mode);
}

GraphicsContext* SystemGraphics::currentContext() {
  OpenContext* current = currentOf(this);
  if (!current) return nullptr;
  return current->document ? static_cast<GraphicsContext*>(current->document.get()) : current->surface.get();
}

void SystemGraphics::setColor(const Color& color) {
  if (PdfContext* document = documentOf(this)) document->setColor(color);
}

void SystemGraphics::drawImage(const UIImageRef& image, const Rect& rect) {
  if (SurfaceContext* surface = surfaceOf(this)) return surface->surface().drawImage(image, rect);
  PdfContext* document = documentOf(this);
  if (!document) return;
  const SystemImage* picture = SystemImage::of(image);
  const BitmapRef pixels = picture ? picture->pixels(pixelsFor(*picture, rect.size)) : nullptr;
  const Wholeness wholeness = pixels ? pixels->wholeness : Wholeness::kNothing;
  if (wholeness != Wholeness::kNothing) document->drawBitmap(*pixels, rect);
  if (!document->expectsRows()) return;
  if (wholeness == Wholeness::kNothing) ++missingPictures_;
  if (wholeness == Wholeness::kPart) ++partialPictures_;
}

void SystemGraphics::beginPDFContextToFile(const std::string& path, const Rect&) {
  auto engine = std::make_unique<TextEngine>();
  lacksFonts_ = !engine->hasFonts();
  if (lacksFonts_ || files_.createFile(path)) return;
  std::unique_ptr<FileHandle> file = files_.openForWriting(path);
  if (!file) return;
  OpenContext open;
  open.owner = this;
  open.document = std::make_unique<PdfContext>(std::move(file), std::move(engine), facts_);
  open.remembering.emplace(artwork_.memo());
  contextsOfThread().push_back(std::move(open));
}

void SystemGraphics::beginPDFPage(const Rect& bounds) {
  if (PdfContext* document = documentOf(this)) document->beginPage(bounds);
}

void SystemGraphics::endPDFContext() {
  OpenContext* current = currentOf(this);
  if (!current || !current->document) return;
  OpenContext ending = std::move(*current);  // it ends also when there is no memory to finish it
  close(current);
  (void)ending.document->finish();  // whoever handed in the files knows of their errors
  const std::lock_guard lock(mutex_);
  for (const auto& [script, count] : ending.document->unshown()) unshown_[script] += count;
}

void SystemGraphics::abandonPDFContext() noexcept {
  // Surfaces that were left open in it go, too.
  while (OpenContext* current = currentOf(this)) {
    const bool isDocument = current->document != nullptr;
    close(current);
    if (isDocument) return;
  }
}

void SystemGraphics::expectRows(const ExpectedRows& rows, const UIFont& font, double width) {
  PdfContext* document = documentOf(this);
  if (!document) return;
  document->expectRows(
      rows, font, width,
      {.preparePicture = [this](const std::string& path, double side) { (void)artwork_.prepare(path, side); },
       .progress = progress_});
}

void SystemGraphics::beginImageContext(Size size, double scale) {
  OpenContext open;
  open.owner = this;
  open.surface = std::make_unique<SurfaceContext>(size, scale);
  contextsOfThread().push_back(std::move(open));
}

UIImageRef SystemGraphics::imageFromCurrentContext() {
  SurfaceContext* surface = surfaceOf(this);
  return surface ? surface->surface().image() : nullptr;
}

void SystemGraphics::endImageContext() {
  OpenContext* current = currentOf(this);
  if (current && current->surface) close(current);
}

}  // namespace chatsum::platform::system
