// A picture of the system: a part of some pixels at a scale. Copies share the pixels.
#pragma once

#include <memory>

#include "platform/interfaces/Artwork.h"
#include "platform/system/images/PixelSource.h"

namespace chatsum::platform::system {

class SystemImage final : public UIImage {
 public:
  /// The whole source, `scale` pixels to a point.
  SystemImage(PixelSourceRef source, double scale);

  /// A picture made of pixels in memory; nullptr for an empty bitmap.
  [[nodiscard]] static UIImageRef ofBitmap(Bitmap bitmap, double scale = 1);
  /// The picture behind the interface; nullptr when there is none, or one of another platform.
  [[nodiscard]] static const SystemImage* of(const UIImageRef& image);

  [[nodiscard]] Size size() const override;
  /// The rectangle grows to whole pixels before it is clipped.
  [[nodiscard]] UIImageRef croppedTo(const Rect& pixels) const override;

  /// Pixels of the picture, before any reduction.
  [[nodiscard]] PixelSize pixelSize() const { return crop_.size(); }
  /// The picture reduced to that many pixels, never enlarged, decoded as small as that allows; nullptr when it cannot
  /// be decoded. The same question again is answered from memory.
  [[nodiscard]] BitmapRef pixels(PixelSize wanted) const;
  /// All of it.
  [[nodiscard]] BitmapRef pixels() const { return pixels(pixelSize()); }

 private:
  SystemImage(PixelSourceRef source, PixelRect crop, double scale)
      : source_(std::move(source)), crop_(crop), scale_(scale) {}

  PixelSourceRef source_;
  PixelRect crop_;
  double scale_;
};

/// The largest square in the middle of a picture of that size in points: what a thumbnail shows of it.
[[nodiscard]] Rect middleSquare(Size size);

}  // namespace chatsum::platform::system
