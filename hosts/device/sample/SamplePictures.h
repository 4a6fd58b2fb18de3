// Photographs of the sample device, drawn for it and kept as JPEG files in the program. Constant data: any thread.
#pragma once

#include <string_view>

namespace chatsum::device {

/// Hills under the sun, 160 x 120 pixels.
std::string_view hillsJpeg();

/// A birthday cake lying on its side, 160 x 120 pixels: upright once it is turned clockwise.
std::string_view cakeJpeg();

/// A boat on the sea, 128 x 96 pixels.
std::string_view boatJpeg();

}  // namespace chatsum::device
