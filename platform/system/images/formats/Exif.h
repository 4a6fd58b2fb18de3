// The two facts of Exif data (CIPA DC-008, a TIFF structure) that drawing needs. Any thread.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/system/images/PixelGeometry.h"

namespace chatsum::platform::system {

struct ExifFacts {
  Orientation orientation;
  /// The small JPEG in the data, counted from its first byte; no length: none.
  std::uint32_t thumbnailOffset = 0, thumbnailLength = 0;
};

/// Reads the first two directories of data that begin with the byte order ("II" or "MM"). What is damaged or lies
/// outside the data is as if it were not there.
[[nodiscard]] ExifFacts readExif(std::string_view data);

}  // namespace chatsum::platform::system
