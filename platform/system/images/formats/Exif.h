// The one fact of Exif data (CIPA DC-008, a TIFF structure) that drawing needs. Any thread.
#pragma once

#include <string_view>

#include "platform/system/images/PixelGeometry.h"

namespace chatsum::platform::system {

/// Reads the first directory of data that begin with the byte order ("II" or "MM"). What is damaged or lies outside the
/// data is as if it were not there.
[[nodiscard]] Orientation orientationIn(std::string_view exif);

}  // namespace chatsum::platform::system
