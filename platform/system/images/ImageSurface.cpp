#include "platform/system/images/ImageSurface.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/system/images/PictureLimits.h"
#include "platform/system/images/SystemImage.h"
#include "platform/system/images/SystemPDFPage.h"

namespace chatsum::platform::system {
namespace {

/// Red, green and blue multiplied by alpha, and alpha, from 0 to 1.
struct Sample {
  double color[3] = {0, 0, 0};
  double alpha = 0;

  void add(const std::uint8_t* pixel, double share) {
    const double part = share * pixel[3] / 255;
    for (std::size_t i = 0; i < 3; ++i) color[i] += part * pixel[i] / 255;
    alpha += part;
  }
};

/// The two pixels beside a place between pixel centres, and the second one's share.
struct Neighbours {
  int first = 0, second = 0;
  double share = 0;

  Neighbours(double at, int count) {
    const double from = std::clamp(at - 0.5, 0.0, static_cast<double>(count - 1));
    first = static_cast<int>(from);
    second = std::min(first + 1, count - 1);
    share = from - first;
  }
};

Sample sampleAt(const Bitmap& bitmap, const Neighbours& x, const Neighbours& y) {
  Sample sample;
  sample.add(bitmap.at(x.first, y.first), (1 - x.share) * (1 - y.share));
  sample.add(bitmap.at(x.second, y.first), x.share * (1 - y.share));
  sample.add(bitmap.at(x.first, y.second), (1 - x.share) * y.share);
  sample.add(bitmap.at(x.second, y.second), x.share * y.share);
  return sample;
}

std::uint8_t byteOf(double value) { return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255)); }

/// Lays the sample over a pixel of the surface, which it covers by that share.
void layOver(std::uint8_t* pixel, const Sample& sample, double coverage) {
  const double below = pixel[3] / 255.0 * (1 - sample.alpha * coverage);
  const double alpha = sample.alpha * coverage + below;
  if (alpha <= 0) return;
  for (std::size_t i = 0; i < 3; ++i) {
    pixel[i] = byteOf((sample.color[i] * coverage + pixel[i] / 255.0 * below) / alpha);
  }
  pixel[3] = byteOf(alpha);
}

/// How much of the pixel lies between two edges.
double coverageOf(int pixel, double low, double high) {
  return std::clamp(std::min(high, pixel + 1.0) - std::max(low, static_cast<double>(pixel)), 0.0, 1.0);
}

}  // namespace

ImageSurface::ImageSurface(Size size, double scale) : scale_(scale) {
  const double width = std::ceil(size.width * scale), height = std::ceil(size.height * scale);
  const auto isSide = [](double side) { return side >= 1 && side <= limits::kSurfaceSide; };
  if (!isSide(width) || !isSide(height) || !(scale > 0)) return;
  size_ = {static_cast<int>(width), static_cast<int>(height)};
  const double held = std::min(1.0, std::sqrt(limits::kSurfacePixels / (width * height)));
  // A long strip keeps at least one row and no more columns than the limit.
  const auto heldSide = [held](double side) {
    return static_cast<int>(std::clamp(std::floor(side * held), 1.0, limits::kSurfacePixels / 64));
  };
  bitmap_.width = heldSide(width);
  bitmap_.height = heldSide(height);
  bitmap_.rgba.assign(static_cast<std::size_t>(bitmap_.width) * static_cast<std::size_t>(bitmap_.height) * 4, 0);
  x_.factor = scale * bitmap_.width / width;
  y_.factor = scale * bitmap_.height / height;
}

void ImageSurface::translate(double x, double y) {
  x_.offset += x_.factor * x;
  y_.offset += y_.factor * y;
}

void ImageSurface::scale(double x, double y) {
  x_.factor *= x;
  y_.factor *= y;
}

bool ImageSurface::Place::isDrawn() const {
  return std::isfinite(left) && std::isfinite(right) && std::isfinite(top) && std::isfinite(bottom) && left != right &&
         top != bottom;
}

PixelSize ImageSurface::Place::pixels() const {
  const auto side = [](double from, double to) {
    return static_cast<int>(std::clamp<double>(std::ceil(std::abs(to - from) - 1e-6), 1, limits::kDrawnSide));
  };
  return {side(left, right), side(top, bottom)};
}

ImageSurface::Place ImageSurface::placeOf(const Rect& rect) const {
  return {x_.at(rect.origin.x), x_.at(rect.origin.x + rect.size.width), y_.at(rect.origin.y),
          y_.at(rect.origin.y + rect.size.height)};
}

PixelSize ImageSurface::pixelsIn(const Rect& rect) const {
  const Place place = placeOf(rect);
  return bitmap_.isEmpty() || !place.isDrawn() ? PixelSize() : place.pixels();
}

void ImageSurface::drawImage(const UIImageRef& image, const Rect& rect) {
  const SystemImage* picture = SystemImage::of(image);
  if (!picture) return;
  const PixelSize wanted = pixelsIn(rect);
  if (!wanted.isEmpty()) draw(picture->pixels(wanted), placeOf(rect));
}

void ImageSurface::drawPDFPage(const PDFPage& page) {
  const auto* document = dynamic_cast<const SystemPDFPage*>(&page);
  if (!document) return;
  const Rect box = page.cropBox();
  Place place = placeOf(box);
  std::swap(place.top, place.bottom);  // the page's own y grows upwards
  const PixelSize wanted = pixelsIn(box);
  if (!wanted.isEmpty()) draw(document->pixels(wanted), place);
}

void ImageSurface::draw(const BitmapRef& pixels, const Place& place) {
  const Wholeness wholeness = pixels ? pixels->wholeness : Wholeness::kNothing;
  // Some of several is a part of what was to be shown.
  bitmap_.wholeness = !isDrawnOn_ || bitmap_.wholeness == wholeness ? wholeness : Wholeness::kPart;
  isDrawnOn_ = true;
  if (pixels) draw(*pixels, place);
}

void ImageSurface::draw(const Bitmap& bitmap, const Place& place) {
  const double width = place.right - place.left, height = place.bottom - place.top;
  constexpr double kHair = 1e-6;
  const auto isWhole = [](double value) { return std::abs(value - std::round(value)) < kHair; };
  if (std::abs(width - bitmap.width) < kHair && std::abs(height - bitmap.height) < kHair && isWhole(place.left) &&
      isWhole(place.top) && std::abs(place.left) < limits::kSurfaceSide && std::abs(place.top) < limits::kSurfaceSide) {
    copy(bitmap, static_cast<int>(std::lround(place.left)), static_cast<int>(std::lround(place.top)));
    return;
  }
  const double low = std::min(place.left, place.right), high = std::max(place.left, place.right);
  const double upper = std::min(place.top, place.bottom), lower = std::max(place.top, place.bottom);
  const auto inside = [](double value, int side) {
    return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(side)));
  };
  const int firstX = inside(std::floor(low), bitmap_.width), endX = inside(std::ceil(high), bitmap_.width);
  const int firstY = inside(std::floor(upper), bitmap_.height), endY = inside(std::ceil(lower), bitmap_.height);
  for (int y = firstY; y < endY; ++y) {
    const Neighbours rows((y + 0.5 - place.top) / height * bitmap.height, bitmap.height);
    const double coverage = coverageOf(y, upper, lower);
    for (int x = firstX; x < endX; ++x) {
      const Neighbours columns((x + 0.5 - place.left) / width * bitmap.width, bitmap.width);
      layOver(pixelAt(x, y), sampleAt(bitmap, columns, rows), coverage * coverageOf(x, low, high));
    }
  }
}

void ImageSurface::copy(const Bitmap& bitmap, int left, int top) {
  const int endX = std::min(bitmap_.width, left + bitmap.width), endY = std::min(bitmap_.height, top + bitmap.height);
  for (int y = std::max(top, 0); y < endY; ++y) {
    for (int x = std::max(left, 0); x < endX; ++x) {
      const std::uint8_t* from = bitmap.at(x - left, y - top);
      std::uint8_t* to = pixelAt(x, y);
      if (from[3] == 255 || to[3] == 0) {
        std::memcpy(to, from, 4);
      } else {
        Sample sample;
        sample.add(from, 1);
        layOver(to, sample, 1);
      }
    }
  }
}

UIImageRef ImageSurface::image() const {
  if (bitmap_.isEmpty()) return nullptr;
  return std::make_shared<const SystemImage>(
      std::make_shared<const BitmapPixels>(std::make_shared<const Bitmap>(bitmap_), size_), scale_);
}

}  // namespace chatsum::platform::system
