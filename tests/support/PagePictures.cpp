#include "tests/support/PagePictures.h"

#include <png.h>

#include <algorithm>
#include <cstdlib>

namespace chatsum::test {
namespace {

namespace fs = std::filesystem;

constexpr int kChannels = 3;
// Pages are drawn without chance. What is left of a margin is for another build of the same viewer.
constexpr double kMostMean = 0.1, kMostShareOff = 0.0002;

Picture without(Picture picture, const std::vector<PixelRect>& rects) {
  for (const PixelRect& rect : rects) blank(picture, rect);
  return picture;
}

std::size_t placeOf(const Picture& picture, int x, int y) {
  return (static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) + static_cast<std::size_t>(x)) *
         kChannels;
}

}  // namespace

std::optional<Picture> readPicture(const fs::path& png) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, png.c_str())) return std::nullopt;
  image.format = PNG_FORMAT_RGB;
  Picture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
  picture.bytes.resize(PNG_IMAGE_SIZE(image));
  const png_color white{255, 255, 255};
  if (!png_image_finish_read(&image, &white, picture.bytes.data(), 0, nullptr)) return std::nullopt;
  return picture;
}

void blank(Picture& picture, const PixelRect& rect) {
  const int left = std::clamp(rect.left, 0, picture.width), right = std::clamp(rect.right, left, picture.width);
  const int bottom = std::min(rect.bottom, picture.height);
  for (int y = std::max(rect.top, 0); y < bottom; ++y) {
    std::fill(picture.bytes.begin() + static_cast<std::ptrdiff_t>(placeOf(picture, left, y)),
              picture.bytes.begin() + static_cast<std::ptrdiff_t>(placeOf(picture, right, y)), std::uint8_t{255});
  }
}

Picture shrunk(const Picture& picture, int side) {
  Picture small{picture.width / side, picture.height / side, {}};
  for (int y = 0; y < small.height; ++y) {
    for (int x = 0; x < small.width; ++x) {
      for (std::size_t channel = 0; channel < kChannels; ++channel) {
        int sum = 0;
        for (int i = 0; i < side * side; ++i) {
          sum += picture.bytes[placeOf(picture, x * side + i % side, y * side + i / side) + channel];
        }
        small.bytes.push_back(static_cast<std::uint8_t>(sum / (side * side)));
      }
    }
  }
  return small;
}

PictureDifference differenceOf(const Picture& one, const Picture& other) {
  constexpr int kOff = 64;
  if (one.width != other.width || one.height != other.height) return {255, 255, 1};
  if (one.bytes.empty()) return {};
  double sum = 0, off = 0, most = 0;
  for (std::size_t i = 0; i < one.bytes.size(); i += kChannels) {
    int largest = 0;
    for (std::size_t channel = 0; channel < kChannels; ++channel) {
      const int difference = std::abs(one.bytes[i + channel] - other.bytes[i + channel]);
      sum += difference;
      largest = std::max(largest, difference);
    }
    off += largest > kOff ? 1 : 0;
    most = std::max<double>(most, largest);
  }
  const auto count = static_cast<double>(one.bytes.size());
  return {sum / count, most, off * kChannels / count};
}

::testing::AssertionResult looksLikeGolden(const fs::path& png, const std::string& name,
                                           const std::vector<PixelRect>& withoutRects) {
  const fs::path golden = fs::path(CHATSUM_TEST_GOLDEN) / name;
  const std::optional<Picture> now = readPicture(png);
  if (!now) return ::testing::AssertionFailure() << png << " cannot be read";
  if (std::getenv("CHATSUM_UPDATE_GOLDEN")) {
    fs::create_directories(golden.parent_path());
    fs::copy_file(png, golden, fs::copy_options::overwrite_existing);
  }
  const std::optional<Picture> expected = readPicture(golden);
  if (!expected) return ::testing::AssertionFailure() << golden << " cannot be read";
  const PictureDifference difference = differenceOf(without(*now, withoutRects), without(*expected, withoutRects));
  if (difference.mean <= kMostMean && difference.shareOff <= kMostShareOff) return ::testing::AssertionSuccess();

  const fs::path kept = fs::path(CHATSUM_TEST_PICTURES) / name;
  fs::create_directories(kept.parent_path());
  fs::copy_file(png, kept, fs::copy_options::overwrite_existing);
  return ::testing::AssertionFailure() << kept << " differs from " << golden << ": by " << difference.mean
                                       << " of 255 on average, strongly in " << difference.shareOff * 100
                                       << " % of the pixels";
}

}  // namespace chatsum::test
