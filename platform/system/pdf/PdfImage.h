// Pictures as image objects (ISO 32000-1, 8.9). No state, any thread.
#pragma once

#include <vector>

#include "platform/system/images/Bitmap.h"
#include "platform/system/pdf/StreamQueue.h"

namespace chatsum::platform::system {

/// Whether some pixel is not quite opaque.
[[nodiscard]] bool hasTransparency(const Bitmap& bitmap);

/// The image and, when it has transparency, its mask under the second number. Exact, but for an opaque one of many
/// colours that is much smaller as a JPEG.
[[nodiscard]] std::vector<PdfStream> imageStreams(const Bitmap& bitmap, int number, int maskNumber);

}  // namespace chatsum::platform::system
