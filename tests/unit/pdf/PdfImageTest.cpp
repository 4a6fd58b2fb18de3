#include "platform/system/pdf/PdfImage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <vector>

#include "tests/unit/pdf/Tools.h"

namespace chatsum::platform::system {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

Bitmap bitmapOf(int width, int height, const std::function<std::array<int, 4>(int, int)>& pixel) {
  Bitmap bitmap{width, height, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (const int value : pixel(x, y)) bitmap.rgba.push_back(static_cast<std::uint8_t>(value));
    }
  }
  return bitmap;
}

int noise(int x, int y, int salt) {
  const auto mixed = static_cast<std::uint32_t>(x * 7919 + y * 104729 + salt * 1299721) * 2654435761U;
  return static_cast<int>((mixed ^ (mixed >> 15)) & 0xFF);
}

Bitmap photo(int side, int salt = 0) {
  return bitmapOf(side, side, [=](int x, int y) {
    return std::array<int, 4>{(x * 3 + salt + noise(x, y, 1) / 16) & 0xFF, (y * 3 + noise(x, y, 2) / 16) & 0xFF,
                              (x + y) & 0xFF, 255};
  });
}

PdfOnDisk pageOf(const std::vector<Bitmap>& bitmaps) {
  return PdfOnDisk([&](PdfDocument& document) {
    document.beginPage(kTestPage);
    double x = 10;
    for (const Bitmap& bitmap : bitmaps) {
      document.drawBitmap(bitmap, {{x, 10}, {64, 64}});
      x += 70;
    }
  });
}

/// The pixels of the n-th image as a reader takes them out of the file.
std::string extracted(const PdfOnDisk& file, const std::string& name) {
  EXPECT_EQ(run("pdfimages -png " + file.path() + " " + file.beside("image")).text, "");
  const std::string made = file.beside("image-" + name + ".png");
  return run("convert " + made + " -depth 8 rgb:-").text;
}

std::string rgbOf(const Bitmap& bitmap) {
  std::string bytes;
  for (std::size_t at = 0; at < bitmap.rgba.size(); ++at) {
    if (at % 4 != 3) bytes += static_cast<char>(bitmap.rgba[at]);
  }
  return bytes;
}

TEST(PdfImage, StandsInTheFileOnceForEqualPixels) {
  const Bitmap one = photo(32), other = photo(32, 1);
  const PdfOnDisk file = pageOf({one, other, one, photo(32)});
  EXPECT_EQ(file.complaints(), "");
  EXPECT_EQ(file.rendererWarnings(), "");
  const std::string objects = file.objects();
  std::size_t count = 0;
  for (std::size_t at = objects.find("/Subtype /Image"); at != std::string::npos;
       at = objects.find("/Subtype /Image", at + 1))
    ++count;
  EXPECT_EQ(count, 2U);
  const std::string list = run("pdfimages -list " + file.path()).text;
  EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 2 + 4);
}

TEST(PdfImage, IsADifferentOneWithTheSameBytesInAnotherShape) {
  const Bitmap wide{4, 1, std::vector<std::uint8_t>(16, 7)}, high{1, 4, std::vector<std::uint8_t>(16, 7)};
  const std::string list = run("pdfimages -list " + pageOf({wide, high}).path()).text;
  EXPECT_THAT(list, ::testing::ContainsRegex("image +4 +1 "));
  EXPECT_THAT(list, ::testing::ContainsRegex("image +1 +4 "));
}

TEST(PdfImage, KeepsPixelsOfFewColors) {
  const Bitmap bitmap = bitmapOf(37, 23, [](int x, int y) {
    return std::array<int, 4>{x * 5 & 0xF0, y * 9 & 0xF0, 40, 255};
  });
  const PdfOnDisk file = pageOf({bitmap});
  EXPECT_EQ(extracted(file, "000"), rgbOf(bitmap));
  EXPECT_THAT(run("pdfimages -list " + file.path()).text, HasSubstr("index"));
}

TEST(PdfImage, KeepsExactlyTwoHundredAndFiftySixColors) {
  for (const int colors : {255, 256, 257}) {
    const Bitmap bitmap = bitmapOf(257, 3, [=](int x, int) {
      return std::array<int, 4>{x % colors / 2, x % colors & 1, (x % colors) * 7 & 0xFF, 255};
    });
    EXPECT_EQ(extracted(pageOf({bitmap}), "000"), rgbOf(bitmap)) << colors;
  }
}

TEST(PdfImage, KeepsGrayPixels) {
  const Bitmap bitmap = bitmapOf(50, 50, [](int x, int y) {
    const int gray = noise(x, y, 0);
    return std::array<int, 4>{gray, gray, gray, 255};
  });
  const PdfOnDisk file = pageOf({bitmap});
  EXPECT_EQ(extracted(file, "000"), rgbOf(bitmap));
  EXPECT_THAT(run("pdfimages -list " + file.path()).text, HasSubstr("gray"));
}

TEST(PdfImage, KeepsManyColorsWithTransparency) {
  Bitmap bitmap = bitmapOf(60, 40, [](int x, int y) {
    return std::array<int, 4>{x * 4, y * 6, (x * y) & 0xFF, x < 30 ? 255 : 128};
  });
  const PdfOnDisk file = pageOf({bitmap});
  EXPECT_EQ(file.complaints(), "");
  EXPECT_EQ(file.rendererWarnings(), "");
  EXPECT_EQ(extracted(file, "000"), rgbOf(bitmap));
  EXPECT_THAT(run("pdfimages -list " + file.path()).text, ::testing::ContainsRegex("smask +60 +40 +gray"));
}

TEST(PdfImage, ShowsThroughWhereItIsTransparent) {
  const PdfOnDisk file = pageOf({bitmapOf(2, 1, [](int x, int) {
    return std::array<int, 4>{255, 0, 0, x == 0 ? 0 : 255};
  })});
  const std::string pixels = run("pdftoppm -r 72 " + file.path()).text;
  const std::size_t begin = pixels.size() - 762 * 792 * 3;
  const auto at = [&](std::size_t x, std::size_t y) { return pixels.substr(begin + (y * 762 + x) * 3, 3); };
  EXPECT_EQ(at(20, 40), "\xFF\xFF\xFF");
  EXPECT_EQ(at(65, 40), std::string("\xFF\0\0", 3));
}

TEST(PdfImage, IsAJpegWhenThatIsSmaller) {
  const PdfOnDisk file = pageOf({photo(64)});
  const std::string list = run("pdfimages -list " + file.path()).text;
  EXPECT_THAT(list, ::testing::ContainsRegex("64 +64 +rgb +3 +8 +jpeg"));
  const std::string want = rgbOf(photo(64)), got = extracted(file, "000");
  ASSERT_EQ(got.size(), want.size());
  double difference = 0;
  for (std::size_t i = 0; i < want.size(); ++i) {
    difference += std::abs(static_cast<unsigned char>(want[i]) - static_cast<unsigned char>(got[i]));
  }
  EXPECT_LT(difference / static_cast<double>(want.size()), 6);
}

TEST(PdfImage, IsNoJpegWhenItIsTransparent) {
  Bitmap bitmap = photo(64);
  bitmap.rgba[3] = 254;
  const std::string list = run("pdfimages -list " + pageOf({bitmap}).path()).text;
  EXPECT_THAT(list, Not(HasSubstr("jpeg")));
  EXPECT_THAT(list, HasSubstr("smask"));
}

TEST(PdfImage, PredictsSmoothPictures) {
  const Bitmap smooth = bitmapOf(200, 200, [](int x, int y) {
    return std::array<int, 4>{x, y, (x + y) / 2, x == 0 ? 254 : 255};
  });
  const auto streams = imageStreams(smooth, 1, 2);
  ASSERT_EQ(streams.size(), 2U);
  EXPECT_THAT(streams[0].dictionary, HasSubstr("/Predictor 15"));
  EXPECT_LT(streams[0].bytes.size(), 3000U);
  EXPECT_EQ(extracted(pageOf({smooth}), "000"), rgbOf(smooth));
}

TEST(PdfImage, MayBeOnePixelOrNone) {
  const PdfOnDisk file = pageOf({{1, 1, {1, 2, 3, 4}}, {1, 1, {9, 9, 9, 255}}, {}, {0, 5, {}}});
  EXPECT_EQ(file.complaints(), "");
  EXPECT_EQ(file.rendererWarnings(), "");
}

}  // namespace
}  // namespace chatsum::platform::system
