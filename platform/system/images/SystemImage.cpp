#include "platform/system/images/SystemImage.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace chatsum::platform::system {

SystemImage::SystemImage(PixelSourceRef source, double scale)
    : source_(std::move(source)), crop_{0, 0, source_->size().width, source_->size().height}, scale_(scale) {}

UIImageRef SystemImage::ofBitmap(Bitmap bitmap, double scale) {
  if (bitmap.isEmpty()) return nullptr;
  const PixelSize size{bitmap.width, bitmap.height};
  const auto source = std::make_shared<const BitmapPixels>(std::make_shared<const Bitmap>(std::move(bitmap)), size);
  return std::make_shared<const SystemImage>(source, scale);
}

const SystemImage* SystemImage::of(const UIImageRef& image) { return dynamic_cast<const SystemImage*>(image.get()); }

Size SystemImage::size() const { return {crop_.width / scale_, crop_.height / scale_}; }

UIImageRef SystemImage::croppedTo(const Rect& pixels) const {
  const double left = std::max(std::floor(pixels.origin.x), 0.0);
  const double top = std::max(std::floor(pixels.origin.y), 0.0);
  const double right = std::min<double>(std::ceil(pixels.origin.x + pixels.size.width), crop_.width);
  const double bottom = std::min<double>(std::ceil(pixels.origin.y + pixels.size.height), crop_.height);
  // Also false for what is no number.
  if (!(left < right && top < bottom)) return nullptr;
  const PixelRect part{crop_.x + static_cast<int>(left), crop_.y + static_cast<int>(top),
                       static_cast<int>(right - left), static_cast<int>(bottom - top)};
  return std::shared_ptr<const SystemImage>(new SystemImage(source_, part, 1));
}

BitmapRef SystemImage::pixels(PixelSize wanted) const {
  if (wanted.isEmpty()) return nullptr;
  return source_->pixels(crop_, {std::min(wanted.width, crop_.width), std::min(wanted.height, crop_.height)});
}

Rect middleSquare(Size size) {
  const double side = std::min(size.width, size.height);
  return {{(size.width - side) / 2, (size.height - side) / 2}, {side, side}};
}

}  // namespace chatsum::platform::system
