// Pictures as JPEG. No state, any thread.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::platform::system {

/// Pixels of red, green and blue, a byte each, at quality 90 with the colours in full detail. Empty when the encoder
/// cannot do it (more than 65,500 pixels a side).
[[nodiscard]] std::string encodeJpeg(std::string_view rgb, int width, int height);

}  // namespace chatsum::platform::system
