// The pictures of tests/data and what they show: four quarters, red and green above, blue and yellow below.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>

#include "platform/system/images/ImageSurface.h"
#include "platform/system/images/SystemArtwork.h"
#include "platform/system/images/SystemImage.h"

namespace chatsum::platform::system {

struct Pixel {
  int red = 0, green = 0, blue = 0, alpha = 255;
  friend bool operator==(const Pixel&, const Pixel&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Pixel& pixel) {
    return out << pixel.red << ' ' << pixel.green << ' ' << pixel.blue << ' ' << pixel.alpha;
  }
};

inline constexpr Pixel kRed{0xE0, 0x20, 0x20}, kGreen{0x20, 0xB0, 0x30}, kBlue{0x20, 0x40, 0xD0},
    kYellow{0xF0, 0xD0, 0x20}, kClear{0, 0, 0, 0};

inline std::string picturePath(const std::string& name) {
  return std::string(CHATSUM_TEST_GOLDEN) + "/../data/pictures/" + name;
}

/// A name for the test of a file.
inline std::string testName(const ::testing::TestParamInfo<std::string>& file) {
  std::string name;
  for (const char c : file.param) name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
  return name;
}

inline std::string readFile(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

inline std::string writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream stream(path, std::ios::binary | std::ios::trunc);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!stream.flush()) throw std::runtime_error("cannot write " + path);
  return path;
}

inline Pixel pixelAt(const Bitmap& bitmap, int x, int y) {
  const std::uint8_t* pixel = bitmap.at(x, y);
  return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

/// Lossy kinds of pictures change colours a little.
inline ::testing::AssertionResult isNear(const Pixel& shown, const Pixel& wanted, int most = 12) {
  const auto far = [&](int one, int other) { return std::abs(one - other) > most; };
  const bool isClear = wanted.alpha == 0 && shown.alpha <= most;
  if (!isClear && (far(shown.red, wanted.red) || far(shown.green, wanted.green) || far(shown.blue, wanted.blue) ||
                   far(shown.alpha, wanted.alpha))) {
    return ::testing::AssertionFailure() << "shown " << shown << ", wanted " << wanted;
  }
  return ::testing::AssertionSuccess();
}

/// The colours in the middle of the four quarters.
inline std::array<Pixel, 4> quartersOf(const Bitmap& bitmap) {
  const int left = bitmap.width / 4, right = bitmap.width * 3 / 4;
  const int upper = bitmap.height / 4, lower = bitmap.height * 3 / 4;
  return {pixelAt(bitmap, left, upper), pixelAt(bitmap, right, upper), pixelAt(bitmap, left, lower),
          pixelAt(bitmap, right, lower)};
}

inline constexpr std::array<Pixel, 4> kQuarters{kRed, kGreen, kBlue, kYellow};

inline void expectQuarters(const BitmapRef& bitmap, const std::array<Pixel, 4>& wanted = kQuarters, int most = 12) {
  ASSERT_NE(bitmap, nullptr);
  const auto shown = quartersOf(*bitmap);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_TRUE(isNear(shown[i], wanted[i], most)) << "quarter " << i;
}

/// The picture drawn on a surface of that size; nullptr when there is no picture.
inline BitmapRef drawnOn(Size size, const UIImageRef& image) {
  if (!image) return nullptr;
  ImageSurface surface(size, 1);
  surface.drawImage(image, {{0, 0}, size});
  const UIImageRef drawn = surface.image();
  return SystemImage::of(drawn)->pixels();
}

inline UIImageRef openPicture(const std::string& path) { return SystemArtwork({}).imageWithContentsOfFile(path); }

/// True when nothing of the surface was touched, or there was no picture to draw.
inline bool drawsNothing(const UIImageRef& image) {
  const BitmapRef drawn = drawnOn({16, 16}, image);
  if (!drawn) return true;
  for (const std::uint8_t byte : drawn->rgba) {
    if (byte != 0) return false;
  }
  return true;
}

}  // namespace chatsum::platform::system
