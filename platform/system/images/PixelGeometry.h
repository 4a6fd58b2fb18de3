// Sizes and rectangles that count pixels, and the eight ways a stored picture can lie.
#pragma once

#include <cstdint>

#include "platform/system/images/Bitmap.h"
#include "platform/system/images/PictureLimits.h"

namespace chatsum::platform::system {

struct PixelSize {
  int width = 0, height = 0;
  [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
  [[nodiscard]] std::int64_t pixels() const { return std::int64_t{width} * height; }
  /// Whether a picture may have that size at all.
  [[nodiscard]] bool isAllowed() const {
    return !isEmpty() && width <= limits::kPictureSide && height <= limits::kPictureSide &&
           pixels() <= limits::kPicturePixels;
  }
  friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

struct PixelRect {
  int x = 0, y = 0, width = 0, height = 0;
  [[nodiscard]] PixelSize size() const { return {width, height}; }
  [[nodiscard]] bool isEmpty() const { return size().isEmpty(); }
  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// How the stored rows and columns of a picture lie when it stands upright (the tag Orientation of Exif 2.32).
struct Orientation {
  bool swapsAxes = false;       ///< stored rows are upright columns
  bool mirrorsColumns = false;  ///< stored columns count from the far side
  bool mirrorsRows = false;

  /// Of the tag's values 1 to 8; any other lies as 1 does.
  [[nodiscard]] static Orientation ofTag(unsigned tag);
  /// Size or rectangle of the upright picture in the stored one and the other way round; `stored` is the stored size.
  [[nodiscard]] PixelSize turned(PixelSize size) const { return swapsAxes ? PixelSize{size.height, size.width} : size; }
  [[nodiscard]] PixelRect toStored(const PixelRect& upright, PixelSize stored) const;
  /// The pixels set upright.
  [[nodiscard]] Bitmap upright(Bitmap stored) const;
  friend bool operator==(const Orientation&, const Orientation&) = default;
};

}  // namespace chatsum::platform::system
