#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/fake/TemporaryFolder.h"
#include "tests/unit/images/Pictures.h"

namespace chatsum::platform::system {
namespace {

class Format : public ::testing::TestWithParam<std::string> {};

TEST_P(Format, ShowsItsPicture) {
  const UIImageRef image = openPicture(picturePath(GetParam()));
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->size(), (Size{96, 64}));
  expectQuarters(drawnOn({96, 64}, image));
  expectQuarters(drawnOn({24, 16}, image));
  expectQuarters(drawnOn({200, 150}, image));
}

INSTANTIATE_TEST_SUITE_P(Every, Format,
                         ::testing::Values("plain.jpg", "progressive.jpg", "plain.png", "interlaced.png", "deep.png",
                                           "plain.gif", "interlaced.gif", "animated.gif", "plain.tif", "palette.tif",
                                           "big-endian.tif", "tiled.tif", "jpeg-inside.tif", "deep.tif", "plain.webp",
                                           "lossless.webp", "16-bits.bmp", "24-bits.bmp", "32-bits.bmp", "palette.bmp",
                                           "plain.heic", "plain.avif"),
                         testName);

TEST(PictureFormats, TurnInkIntoLight) {
  // The colours of print are no exact ones of a screen.
  expectQuarters(drawnOn({96, 64}, openPicture(picturePath("cmyk.jpg"))), kQuarters, 40);
}

TEST(PictureFormats, ShowGrayPictures) {
  for (const char* name : {"gray.jpg", "gray.png"}) {
    const BitmapRef drawn = drawnOn({96, 64}, openPicture(picturePath(name)));
    ASSERT_NE(drawn, nullptr) << name;
    const auto quarters = quartersOf(*drawn);
    for (const Pixel& pixel : quarters) {
      EXPECT_EQ(pixel.red, pixel.green) << name;
      EXPECT_EQ(pixel.red, pixel.blue) << name;
      EXPECT_EQ(pixel.alpha, 255) << name;
    }
    EXPECT_GT(quarters[3].red, quarters[2].red + 60) << name;  // yellow is lighter than blue
  }
}

TEST(PictureFormats, ShowBlackAndWhite) {
  expectQuarters(drawnOn({96, 64}, openPicture(picturePath("1-bit.bmp"))),
                 {Pixel{0, 0, 0}, Pixel{255, 255, 255}, Pixel{0, 0, 0}, Pixel{255, 255, 255}}, 0);
}

TEST(PictureFormats, KeepWhatIsTransparent) {
  for (const char* name : {"half-clear.png", "palette-half-clear.png", "half-clear.tif", "half-clear.webp"}) {
    SCOPED_TRACE(name);
    const UIImageRef image = openPicture(picturePath(name));
    expectQuarters(drawnOn({96, 64}, image), {kClear, kGreen, kClear, kYellow});
    expectQuarters(drawnOn({24, 16}, image), {kClear, kGreen, kClear, kYellow});
  }
}

TEST(PictureFormats, LayAFrameOnItsScreen) {
  for (const char* name : {"part-of-screen.gif", "animated.webp"}) {
    SCOPED_TRACE(name);
    const UIImageRef image = openPicture(picturePath(name));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (Size{128, 96}));
    const BitmapRef drawn = drawnOn({128, 96}, image);
    ASSERT_NE(drawn, nullptr);
    EXPECT_EQ(pixelAt(*drawn, 8, 48).alpha, 0);
    EXPECT_EQ(pixelAt(*drawn, 120, 48).alpha, 0);
    EXPECT_EQ(pixelAt(*drawn, 64, 8).alpha, 0);
    EXPECT_EQ(pixelAt(*drawn, 64, 88).alpha, 0);
    EXPECT_TRUE(isNear(pixelAt(*drawn, 24, 24), kRed));
    EXPECT_TRUE(isNear(pixelAt(*drawn, 104, 72), kYellow));
  }
}

TEST(PictureFormats, AreToldByTheBytesAndNotByTheName) {
  const fake::TemporaryFolder folder;
  const std::string jpeg = readFile(picturePath("plain.jpg"));
  for (const char* name : {"a.png", "a.txt", "a", "a.heic"}) {
    expectQuarters(drawnOn({96, 64}, openPicture(writeFile(folder.path() + "/" + name, jpeg))));
  }
  EXPECT_EQ(openPicture(writeFile(folder.path() + "/b.jpg", "no picture at all, but long enough for one")), nullptr);
  EXPECT_EQ(openPicture(writeFile(folder.path() + "/empty.jpg", "")), nullptr);
  EXPECT_EQ(openPicture(folder.path() + "/missing.jpg"), nullptr);
}

TEST(PictureFormats, RefuseRunLengthBitmaps) { EXPECT_EQ(openPicture(picturePath("run-length.bmp")), nullptr); }

TEST(PictureFormats, ReadBitmapsThatStandTopDown) {
  const fake::TemporaryFolder folder;
  std::string bytes = readFile(picturePath("24-bits.bmp"));
  constexpr std::size_t kHeight = 22;
  for (std::size_t i = 0; i < 4; ++i) bytes[kHeight + i] = static_cast<char>(i == 0 ? -64 : -1);  // -64
  const UIImageRef image = openPicture(writeFile(folder.path() + "/a.bmp", bytes));
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->size(), (Size{96, 64}));
  expectQuarters(drawnOn({96, 64}, image), {kBlue, kYellow, kRed, kGreen}, 0);
}

TEST(PictureFormats, TakeTheScaleFromTheName) {
  const fake::TemporaryFolder folder;
  const std::string png = readFile(picturePath("plain.png"));
  const auto sizeNamed = [&](const std::string& name) {
    return openPicture(writeFile(folder.path() + "/" + name, png))->size();
  };
  EXPECT_EQ(sizeNamed("a.png"), (Size{96, 64}));
  EXPECT_EQ(sizeNamed("a@2x.png"), (Size{48, 32}));
  EXPECT_EQ(sizeNamed("a@3x.png"), (Size{32, 64.0 / 3}));
  EXPECT_EQ(sizeNamed("a@2x"), (Size{48, 32}));
  EXPECT_EQ(sizeNamed("a@4x.png"), (Size{96, 64}));
}

}  // namespace
}  // namespace chatsum::platform::system
