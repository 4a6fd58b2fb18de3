#include "hosts/device/sample/SampleFiles.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include "hosts/device/sample/SamplePictures.h"

namespace chatsum::device {
namespace {

std::size_t big(std::string_view bytes, std::size_t place, int count) {
  std::size_t value = 0;
  for (int index = 0; index < count; ++index) {
    value = value << 8 | static_cast<unsigned char>(bytes[place + static_cast<std::size_t>(index)]);
  }
  return value;
}

std::size_t little(std::string_view bytes, std::size_t place, int count) {
  std::size_t value = 0;
  for (int index = count - 1; index >= 0; --index) {
    value = value << 8 | static_cast<unsigned char>(bytes[place + static_cast<std::size_t>(index)]);
  }
  return value;
}

// Width and height from the frame header, walking the segments before it.
std::pair<std::size_t, std::size_t> jpegSize(std::string_view jpeg) {
  for (std::size_t place = 2; place + 9 < jpeg.size() && big(jpeg, place, 1) == 0xff;) {
    const std::size_t marker = big(jpeg, place + 1, 1);
    if (marker == 0xc0 || marker == 0xc2) return {big(jpeg, place + 7, 2), big(jpeg, place + 5, 2)};
    place += 2 + big(jpeg, place + 2, 2);
  }
  return {0, 0};
}

// Checks every chunk's sum and answers the unpacked rows.
std::string unpackedPng(const std::string& png) {
  EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
  std::string packed;
  std::string last;
  for (std::size_t place = 8; place < png.size();) {
    const std::size_t length = big(png, place, 4);
    last = png.substr(place + 4, 4);
    EXPECT_EQ(crc32(0, reinterpret_cast<const Bytef*>(png.data()) + place + 4, static_cast<uInt>(length + 4)),
              big(png, place + 8 + length, 4));
    if (last == "IDAT") packed += png.substr(place + 8, length);
    place += 12 + length;
  }
  EXPECT_EQ(last, "IEND");
  uLongf size = 1'000'000;
  std::string rows(size, '\0');
  EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(rows.data()), &size, reinterpret_cast<const Bytef*>(packed.data()),
                       static_cast<uLong>(packed.size())),
            Z_OK);
  rows.resize(size);
  return rows;
}

TEST(SampleFiles, PhotographsAreWholeJpegFiles) {
  for (std::string_view jpeg : {hillsJpeg(), cakeJpeg(), boatJpeg()}) {
    EXPECT_EQ(jpeg.substr(0, 3), "\xff\xd8\xff");
    EXPECT_EQ(jpeg.substr(jpeg.size() - 2), "\xff\xd9");
  }
  EXPECT_EQ(jpegSize(hillsJpeg()), std::pair(std::size_t{160}, std::size_t{120}));
  EXPECT_EQ(jpegSize(cakeJpeg()), std::pair(std::size_t{160}, std::size_t{120}));
  EXPECT_EQ(jpegSize(boatJpeg()), std::pair(std::size_t{128}, std::size_t{96}));
}

TEST(SampleFiles, TheOrientationStandsInFrontAndThePictureStaysTheSame) {
  const std::string turned = withOrientation(cakeJpeg(), 6);
  EXPECT_EQ(turned.substr(0, 4), "\xff\xd8\xff\xe1");
  EXPECT_EQ(turned.substr(6, 6), std::string("Exif\0\0", 6));
  EXPECT_EQ(big(turned, 22, 2), 0x0112U);
  EXPECT_EQ(big(turned, 30, 2), 6U);
  EXPECT_EQ(jpegSize(turned), jpegSize(cakeJpeg()));
  EXPECT_TRUE(turned.ends_with(cakeJpeg().substr(2)));
}

TEST(SampleFiles, TheSunsetUnpacksToEveryRow) {
  const std::string png = sunsetPng();
  EXPECT_EQ(big(png, 16, 4), 120U);
  EXPECT_EQ(big(png, 20, 4), 80U);
  EXPECT_EQ(png[25], 2);  // RGB
  EXPECT_EQ(unpackedPng(png).size(), 80U * (1 + 120 * 3));
}

TEST(SampleFiles, TheHeartIsOpaqueInsideClearOutsideAndSmoothBetween) {
  const std::string png = heartPng();
  EXPECT_EQ(big(png, 16, 4), 64U);
  EXPECT_EQ(png[25], 6);  // RGBA
  const std::string rows = unpackedPng(png);
  ASSERT_EQ(rows.size(), 64U * (1 + 64 * 4));
  const auto alpha = [&rows](std::size_t x, std::size_t y) { return big(rows, y * (1 + 64 * 4) + 1 + x * 4 + 3, 1); };
  EXPECT_EQ(alpha(0, 0), 0U);
  EXPECT_EQ(alpha(32, 32), 255U);
  bool between = false;
  for (std::size_t x = 0; x < 64; ++x) between = between || (alpha(x, 20) > 0 && alpha(x, 20) < 255);
  EXPECT_TRUE(between);
}

TEST(SampleFiles, TheGifHasTwoFramesOfItsSize) {
  const std::string gif = blinkingGif();
  EXPECT_EQ(gif.substr(0, 6), "GIF89a");
  EXPECT_EQ(little(gif, 6, 2), 48U);
  EXPECT_EQ(little(gif, 8, 2), 48U);
  EXPECT_EQ(gif.back(), ';');
  // Walk the blocks behind the palette of four colours.
  int frames = 0;
  std::size_t place = 13 + 4 * 3;
  while (place < gif.size() && gif[place] != ';') {
    place += gif[place] == ',' ? 11 : 2;
    if (gif[place - 11] == ',') ++frames;
    while (gif[place] != 0) place += 1 + little(gif, place, 1);
    ++place;
  }
  EXPECT_EQ(frames, 2);
  EXPECT_EQ(place + 1, gif.size());
}

TEST(SampleFiles, TheBmpSaysItsOwnSize) {
  const std::string bmp = receiptBmp();
  EXPECT_EQ(bmp.substr(0, 2), "BM");
  EXPECT_EQ(little(bmp, 2, 4), bmp.size());
  EXPECT_EQ(little(bmp, 18, 4), 40U);
  EXPECT_EQ(little(bmp, 22, 4), 60U);
}

TEST(SampleFiles, TheTableOfThePdfPointsAtEveryObject) {
  const std::string pdf = onePagePdf("Heading (1)", "one\ntwo");
  EXPECT_TRUE(pdf.starts_with("%PDF-1.4\n"));
  EXPECT_TRUE(pdf.ends_with("%%EOF\n"));
  EXPECT_NE(pdf.find("(Heading \\(1\\)) Tj"), std::string::npos);
  const std::size_t table = std::stoul(pdf.substr(pdf.find("startxref\n") + 10));
  ASSERT_EQ(pdf.substr(table, 9), "xref\n0 6\n");
  for (std::size_t object = 1; object <= 5; ++object) {
    const std::size_t place = std::stoul(pdf.substr(table + 9 + object * 20, 10));
    EXPECT_EQ(pdf.substr(place, 7), std::to_string(object) + " 0 obj");
  }
}

TEST(SampleFiles, TheFilmsTableOfChunksPointsAtItsFirstPicture) {
  const std::string film = filmOf(boatJpeg(), hillsJpeg(), 128, 96);
  EXPECT_EQ(film.substr(4, 8), "ftypqt  ");
  std::size_t place = 0;
  std::string boxes;
  while (place < film.size()) {
    boxes += film.substr(place + 4, 4) + " ";
    place += big(film, place, 4);
  }
  EXPECT_EQ(place, film.size());
  EXPECT_EQ(boxes, "ftyp mdat moov ");
  const std::size_t chunks = film.find("stco");
  ASSERT_NE(chunks, std::string::npos);
  EXPECT_EQ(film.substr(big(film, chunks + 12, 4), boatJpeg().size()), boatJpeg());
}

TEST(SampleFiles, TheVoiceMessageHoldsHalfASecond) {
  const std::string caf = voiceCaf();
  EXPECT_EQ(caf.substr(0, 4), "caff");
  EXPECT_EQ(caf.substr(8, 4), "desc");
  const std::size_t data = 8 + 12 + 32;
  EXPECT_EQ(caf.substr(data, 4), "data");
  EXPECT_EQ(big(caf, data + 4, 8), 4 + 2U * 4000);
  EXPECT_EQ(caf.size(), data + 12 + 4 + 2 * 4000);
}

}  // namespace
}  // namespace chatsum::device
