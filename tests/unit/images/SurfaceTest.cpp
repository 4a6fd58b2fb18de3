#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "platform/fake/TemporaryFolder.h"
#include "tests/unit/images/Pictures.h"

namespace chatsum::platform::system {
namespace {

/// A picture of one colour.
UIImageRef plain(int width, int height, const Pixel& color, double scale = 1) {
  Bitmap bitmap{width, height, {}};
  for (int i = 0; i < width * height; ++i) {
    for (const int value : {color.red, color.green, color.blue, color.alpha}) {
      bitmap.rgba.push_back(static_cast<std::uint8_t>(value));
    }
  }
  return SystemImage::ofBitmap(bitmap, scale);
}

BitmapRef pixelsOf(const ImageSurface& surface) { return SystemImage::of(surface.image())->pixels(); }

TEST(Surface, IsTransparentUntilItIsDrawnOn) {
  const ImageSurface surface({3, 2}, 2);
  const UIImageRef image = surface.image();
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->size(), (Size{3, 2}));
  const BitmapRef pixels = pixelsOf(surface);
  EXPECT_EQ(pixels->width, 6);
  EXPECT_EQ(pixels->height, 4);
  for (const std::uint8_t byte : pixels->rgba) EXPECT_EQ(byte, 0);
}

TEST(Surface, WithoutASensibleSizeHasNoPicture) {
  constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
  for (const double side : {0.0, -1.0, 1e9, kNoNumber, HUGE_VAL}) {
    ImageSurface surface({side, 10}, 1);
    surface.drawImage(plain(4, 4, kRed), {{0, 0}, {4, 4}});
    EXPECT_EQ(surface.image(), nullptr) << side;
    EXPECT_EQ(ImageSurface({10, side}, 1).image(), nullptr) << side;
  }
  EXPECT_EQ(ImageSurface({10, 10}, 0).image(), nullptr);
}

TEST(Surface, StretchesAPictureIntoTheRectangle) {
  ImageSurface surface({8, 8}, 1);
  surface.drawImage(plain(2, 2, kRed), {{2, 1}, {4, 6}});
  const BitmapRef pixels = pixelsOf(surface);
  EXPECT_EQ(pixelAt(*pixels, 1, 4), kClear);
  EXPECT_EQ(pixelAt(*pixels, 2, 1), kRed);
  EXPECT_EQ(pixelAt(*pixels, 5, 6), kRed);
  EXPECT_EQ(pixelAt(*pixels, 6, 4), kClear);
  EXPECT_EQ(pixelAt(*pixels, 4, 0), kClear);
  EXPECT_EQ(pixelAt(*pixels, 4, 7), kClear);
}

TEST(Surface, CoversAPixelByTheShareThatTheRectangleHasOfIt) {
  ImageSurface surface({4, 4}, 1);
  surface.drawImage(plain(2, 2, kRed), {{0.5, 1}, {2, 2}});
  const BitmapRef pixels = pixelsOf(surface);
  EXPECT_EQ(pixelAt(*pixels, 0, 1), (Pixel{kRed.red, kRed.green, kRed.blue, 128}));
  EXPECT_EQ(pixelAt(*pixels, 1, 1), kRed);
  EXPECT_EQ(pixelAt(*pixels, 2, 1), (Pixel{kRed.red, kRed.green, kRed.blue, 128}));
}

TEST(Surface, LaysTransparentPicturesOverWhatIsThere) {
  ImageSurface surface({2, 2}, 1);
  surface.drawImage(plain(2, 2, {0, 0, 200}), {{0, 0}, {2, 2}});
  surface.drawImage(plain(2, 2, {200, 0, 0, 128}), {{0, 0}, {2, 2}});
  EXPECT_TRUE(isNear(pixelAt(*pixelsOf(surface), 0, 0), {100, 0, 100}, 1));
  surface.drawImage(plain(2, 2, kClear), {{0, 0}, {2, 2}});
  EXPECT_TRUE(isNear(pixelAt(*pixelsOf(surface), 0, 0), {100, 0, 100}, 1));
}

TEST(Surface, FollowsItsScaleAndItsCoordinates) {
  ImageSurface surface({10, 10}, 2);
  surface.translate(2, 3);
  surface.scale(2, 1);
  surface.translate(1, 0);
  surface.drawImage(plain(1, 1, kRed), {{0, 0}, {2, 3}});  // points 4 to 8 and 3 to 6, twice as many pixels
  const BitmapRef pixels = pixelsOf(surface);
  EXPECT_EQ(pixelAt(*pixels, 8, 6), kRed);
  EXPECT_EQ(pixelAt(*pixels, 15, 11), kRed);
  EXPECT_EQ(pixelAt(*pixels, 7, 6), kClear);
  EXPECT_EQ(pixelAt(*pixels, 16, 11), kClear);
  EXPECT_EQ(pixelAt(*pixels, 8, 5), kClear);
  EXPECT_EQ(pixelAt(*pixels, 8, 12), kClear);
}

TEST(Surface, MirrorsWithItsCoordinates) {
  ImageSurface surface({96, 64}, 1);
  surface.translate(0, 64);
  surface.scale(1, -1);
  surface.drawImage(openPicture(picturePath("plain.png")), {{0, 0}, {96, 64}});
  expectQuarters(pixelsOf(surface), {kBlue, kYellow, kRed, kGreen});
}

TEST(Surface, DrawsNothingForNoPicture) {
  ImageSurface surface({4, 4}, 1);
  surface.drawImage(nullptr, {{0, 0}, {4, 4}});
  surface.drawImage(plain(2, 2, kRed), {{0, 0}, {0, 4}});
  surface.drawImage(plain(2, 2, kRed), {{HUGE_VAL, 0}, {4, 4}});
  surface.drawImage(plain(2, 2, kRed), {{1e12, 0}, {4, 4}});
  const BitmapRef pixels = pixelsOf(surface);
  for (const std::uint8_t byte : pixels->rgba) EXPECT_EQ(byte, 0);
}

TEST(Surface, HoldsFewerPixelsWhenItIsVeryLargeAndCountsThemAllTheSame) {
  ImageSurface surface({14400, 28800}, 1);
  surface.drawImage(openPicture(picturePath("plain.png")), {{0, 0}, {14400, 28800}});
  const UIImageRef image = surface.image();
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->size(), (Size{14400, 28800}));
  expectQuarters(drawnOn({40, 80}, image));
  expectQuarters(drawnOn({10, 10}, image->croppedTo({{7200, 0}, {7200, 14400}})), {kGreen, kGreen, kGreen, kGreen});
  EXPECT_LE(SystemImage::of(image)->pixels()->rgba.size(), std::size_t{20} << 20);
}

TEST(Surface, OfAFewVeryLongRowsStaysSmall) {
  const ImageSurface surface({1000000, 1}, 1);
  ASSERT_NE(surface.image(), nullptr);
  EXPECT_EQ(surface.image()->size(), (Size{1000000, 1}));
  EXPECT_LE(pixelsOf(surface)->rgba.size(), std::size_t{1} << 20);
}

TEST(Surface, GivesAPictureThatLaterDrawingDoesNotChange) {
  ImageSurface surface({2, 2}, 1);
  surface.drawImage(plain(2, 2, kRed), {{0, 0}, {2, 2}});
  const UIImageRef before = surface.image();
  surface.drawImage(plain(2, 2, kBlue), {{0, 0}, {2, 2}});
  EXPECT_EQ(pixelAt(*SystemImage::of(before)->pixels(), 0, 0), kRed);
}

TEST(Crop, GrowsToWholePixelsAndIsClipped) {
  const UIImageRef image = plain(10, 6, kRed, 2);
  EXPECT_EQ(image->size(), (Size{5, 3}));
  const UIImageRef part = image->croppedTo({{1.5, 0.2}, {3, 2}});
  ASSERT_NE(part, nullptr);
  EXPECT_EQ(part->size(), (Size{4, 3}));  // 1 to 5, 0 to 3; pixels, at scale 1
  EXPECT_EQ(image->croppedTo({{-5, 2}, {100, 100}})->size(), (Size{10, 4}));
  EXPECT_EQ(part->croppedTo({{3, 0}, {10, 10}})->size(), (Size{1, 3}));
}

TEST(Crop, ThatLeavesNothingIsNoPicture) {
  const UIImageRef image = plain(10, 6, kRed);
  EXPECT_EQ(image->croppedTo({{10, 0}, {5, 5}}), nullptr);
  EXPECT_EQ(image->croppedTo({{-5, 0}, {5, 5}}), nullptr);
  EXPECT_EQ(image->croppedTo({{2, 2}, {0, 5}}), nullptr);
  EXPECT_EQ(image->croppedTo({{2, 2}, {-1, 5}}), nullptr);
  EXPECT_EQ(image->croppedTo({{std::nan(""), 2}, {1, 5}}), nullptr);
  EXPECT_EQ(image->croppedTo({{2, 2}, {std::nan(""), 5}}), nullptr);
}

TEST(Crop, OfACropCountsFromTheFirst) {
  const UIImageRef image = openPicture(picturePath("plain.png"));
  const UIImageRef right = image->croppedTo({{48, 0}, {48, 64}});
  expectQuarters(drawnOn({8, 8}, right->croppedTo({{0, 32}, {48, 32}})), {kYellow, kYellow, kYellow, kYellow});
}

TEST(Surface, TellsHowMuchOfItsPicturesCouldBeDecoded) {
  const fake::TemporaryFolder folder;
  const std::string sound = readFile(picturePath("large.jpg"));
  const UIImageRef whole = openPicture(picturePath("large.jpg"));
  const UIImageRef part = openPicture(writeFile(folder.path() + "/part.jpg", sound.substr(0, sound.size() * 3 / 4)));
  const UIImageRef nothing =
      openPicture(writeFile(folder.path() + "/none.png", readFile(picturePath("interlaced.png")).substr(0, 150)));
  const auto wholeness = [](const std::vector<UIImageRef>& images) {
    ImageSurface surface({32, 32}, 1);
    for (const UIImageRef& image : images) surface.drawImage(image, {{0, 0}, {32, 32}});
    // Also of what is made of the surface.
    return SystemImage::of(surface.image()->croppedTo({{1, 1}, {20, 20}}))->pixels({8, 8})->wholeness;
  };
  ASSERT_TRUE(whole && part && nothing);
  EXPECT_EQ(wholeness({}), Wholeness::kWhole);
  EXPECT_EQ(wholeness({whole}), Wholeness::kWhole);
  EXPECT_EQ(wholeness({part}), Wholeness::kPart);
  EXPECT_EQ(wholeness({nothing}), Wholeness::kNothing);
  EXPECT_EQ(wholeness({nothing, nothing}), Wholeness::kNothing);
  EXPECT_EQ(wholeness({nothing, whole}), Wholeness::kPart);
  EXPECT_EQ(wholeness({whole, part, whole}), Wholeness::kPart);
}

}  // namespace
}  // namespace chatsum::platform::system
