// Pictures of pages, and how far two of them differ. No state, any thread.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace chatsum::test {

/// Eight bits each of red, green and blue for every pixel, rows from the top.
struct Picture {
  int width = 0, height = 0;
  std::vector<std::uint8_t> bytes;
};

/// Pixels from (left, top) to before (right, bottom).
struct PixelRect {
  int left = 0, top = 0, right = 0, bottom = 0;
};

/// Squares of so many pixels as one pixel of their average colour; what is left at the right and below is dropped.
[[nodiscard]] Picture shrunk(const Picture& picture, int side);

struct PictureDifference {
  double mean = 0;      ///< of the absolute differences of all bytes, 0 to 255
  double largest = 0;   ///< absolute difference of two bytes
  double shareOff = 0;  ///< of the pixels that are off by more than 64 in a colour, 0 to 1
};

/// Reads a PNG file; none when it cannot be read.
[[nodiscard]] std::optional<Picture> readPicture(const std::filesystem::path& png);
/// Paints a rectangle white, as far as it lies on the picture.
void blank(Picture& picture, const PixelRect& rect);
/// How far two pictures of one size differ; a picture of another size differs wholly.
[[nodiscard]] PictureDifference differenceOf(const Picture& one, const Picture& other);

/// Compares a page that was drawn now with the committed PNG of that name (below the folder of golden files), without
/// what the rectangles cover. On a difference the page is kept in the build folder and the message names it. With
/// CHATSUM_UPDATE_GOLDEN in the environment the page becomes the committed one; look at it before it is kept.
[[nodiscard]] ::testing::AssertionResult looksLikeGolden(const std::filesystem::path& png, const std::string& name,
                                                         const std::vector<PixelRect>& without = {});

}  // namespace chatsum::test
