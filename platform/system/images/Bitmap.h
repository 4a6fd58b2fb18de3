// Pixels in memory.
#pragma once

#include <cstdint>
#include <vector>

namespace chatsum::platform::system {

/// How much of the pictures that were drawn in a bitmap, or decoded into it, could be decoded.
enum class Wholeness : std::uint8_t { kWhole, kPart, kNothing };

/// Rows from top to bottom, pixels from left to right, red, green, blue and alpha of a byte each, alpha not multiplied
/// into the colours.
struct Bitmap {
  int width = 0, height = 0;
  std::vector<std::uint8_t> rgba;           ///< width * height * 4 bytes
  Wholeness wholeness = Wholeness::kWhole;  ///< what could not be decoded is clear

  [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
  [[nodiscard]] const std::uint8_t* at(int x, int y) const {
    return rgba.data() +
           (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) * 4;
  }
};

}  // namespace chatsum::platform::system
