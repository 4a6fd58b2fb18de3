#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "platform/fake/TemporaryFolder.h"
#include "platform/system/images/PictureLimits.h"
#include "tests/unit/images/Pictures.h"

namespace chatsum::platform::system {
namespace {

const std::vector<std::string>& everyKind() {
  static const std::vector<std::string> kNames = {
      "plain.jpg",       "progressive.jpg", "cmyk.jpg",        "small-inside.jpg", "turned-6.jpg", "plain.png",
      "interlaced.png",  "half-clear.png",  "plain.gif",       "interlaced.gif",   "animated.gif", "plain.tif",
      "palette.tif",     "tiled.tif",       "jpeg-inside.tif", "deep.tif",         "plain.webp",   "lossless.webp",
      "half-clear.webp", "animated.webp",   "turned-6.webp",   "palette.bmp",      "16-bits.bmp",  "24-bits.bmp",
      "plain.heic",      "turned.heic",     "plain.avif"};
  return kNames;
}

/// Opens the bytes and draws what they hold, as the picture of a file is drawn.
BitmapRef decoded(const std::string& content, PixelSize wanted = {16, 16}) {
  PictureBytes bytes(content);
  const PictureCodec* codec = codecFor(bytes);
  if (!codec) return nullptr;
  const auto header = codec->readHeader(bytes);
  if (!header || !header->size.isAllowed()) return nullptr;
  PictureReducer reducer(header->size, {0, 0, header->size.width, header->size.height}, wanted);
  if (!codec->decode(bytes, *header, reducer)) return nullptr;
  auto bitmap = std::make_shared<Bitmap>(reducer.take());
  return bitmap->isEmpty() ? nullptr : bitmap;
}

std::string big32(std::uint32_t number) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFF);
  return bytes;
}

std::string pngChunk(const std::string& type, const std::string& content) {
  const std::string body = type + content;
  const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
  return big32(static_cast<std::uint32_t>(content.size())) + body + big32(static_cast<std::uint32_t>(sum));
}

std::string deflated(const std::string& bytes) {
  uLongf size = compressBound(static_cast<uLong>(bytes.size()));
  std::string packed(size, '\0');
  compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
            static_cast<uLong>(bytes.size()), 1);
  packed.resize(size);
  return packed;
}

/// Eight bits of gray; `interlace` 1 is Adam7.
std::string pngOf(std::uint32_t width, std::uint32_t height, const std::string& packed, char interlace = 0,
                  const std::string& chunks = "") {
  return "\x89PNG\r\n\x1A\n" +
         pngChunk("IHDR", big32(width) + big32(height) + std::string("\x08\0\0\0", 4) + interlace) + chunks +
         pngChunk("IDAT", packed) + pngChunk("IEND", "");
}

/// The most memory this process ever used, in bytes.
std::size_t peakMemory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

TEST(HostilePicture, OfAHugeSizeIsRefusedByItsHeader) {
  const fake::TemporaryFolder folder;
  const auto opened = [&](const std::string& bytes) { return openPicture(writeFile(folder.path() + "/a", bytes)); };
  EXPECT_EQ(opened(pngOf(60000, 60000, deflated("a"))), nullptr);
  EXPECT_EQ(opened(pngOf(32768, 1, deflated("a"))), nullptr);
  EXPECT_EQ(opened(pngOf(20000, 20000, deflated("a"))), nullptr);
  EXPECT_EQ(opened(pngOf(0, 5, deflated("a"))), nullptr);
  EXPECT_EQ(opened(pngOf(0xFFFFFFFF, 0xFFFFFFFF, deflated("a"))), nullptr);

  std::string gif = readFile(picturePath("plain.gif"));
  gif.replace(6, 4, "\x60\xEA\x60\xEA");  // 60000 x 60000
  EXPECT_EQ(opened(gif), nullptr);
  std::string bmp = readFile(picturePath("24-bits.bmp"));
  bmp.replace(18, 8, std::string("\x60\xEA\0\0\x60\xEA\0\0", 8));
  EXPECT_EQ(opened(bmp), nullptr);
  bmp.replace(18, 8, std::string("\x60\0\0\0\0\0\0\x80", 8));  // a height that has no positive number
  EXPECT_EQ(opened(bmp), nullptr);
  std::string jpeg = readFile(picturePath("plain.jpg"));
  const std::size_t frame = jpeg.find("\xFF\xC0");
  ASSERT_NE(frame, std::string::npos);
  jpeg.replace(frame + 5, 4, "\xEA\x60\xEA\x60");
  EXPECT_EQ(opened(jpeg), nullptr);
}

TEST(HostilePicture, ThatIsCutOffDrawsNothing) {
  for (const std::string& name : everyKind()) {
    const std::string whole = readFile(picturePath(name));
    ASSERT_NE(decoded(whole), nullptr) << name;
    EXPECT_EQ(decoded(whole)->wholeness, Wholeness::kWhole) << name;
    if (name.ends_with(".jpg")) continue;  // show what is there
    for (const double part : {0.02, 0.1, 0.25, 0.5, 0.75, 0.9}) {
      // What ends these files are not pixels of their first picture.
      static const std::set<std::string> kWithMoreBehind = {"animated.gif",   "animated.webp",  "turned-6.webp",
                                                            "interlaced.png", "half-clear.png", "palette.tif",
                                                            "tiled.tif",      "deep.tif"};
      if (part > 0.5 && kWithMoreBehind.contains(name)) continue;
      const auto length = static_cast<std::size_t>(static_cast<double>(whole.size()) * part);
      EXPECT_EQ(decoded(whole.substr(0, length)), nullptr) << name << " cut at " << part;
    }
  }
}

/// How many of its rows a picture shows from the top on, all of their columns; -1 when there is one below a clear one.
int rowsShown(const Bitmap& bitmap) {
  int shown = 0;
  for (int y = 0; y < bitmap.height; ++y) {
    int columns = 0;
    for (int x = 0; x < bitmap.width; ++x) columns += pixelAt(bitmap, x, y).alpha == 255 ? 1 : 0;
    if (columns != 0 && (columns != bitmap.width || shown != y)) return -1;
    shown += columns == 0 ? 0 : 1;
  }
  return shown;
}

TEST(HostilePicture, ThatIsCutOffShowsTheUpperPartOfAJpeg) {
  for (const char* name : {"plain.jpg", "cmyk.jpg", "gray.jpg", "large.jpg", "small-inside.jpg"}) {
    SCOPED_TRACE(name);
    const std::string whole = readFile(picturePath(name));
    const BitmapRef all = decoded(whole, {64, 64});
    ASSERT_NE(all, nullptr);
    const std::size_t scan = whole.rfind("\xFF\xDA");
    int before = 0;
    for (const double part : {0.5, 0.7, 0.9}) {
      const auto length = scan + static_cast<std::size_t>(static_cast<double>(whole.size() - scan) * part);
      const BitmapRef bitmap = decoded(whole.substr(0, length), {64, 64});
      ASSERT_NE(bitmap, nullptr) << part;
      EXPECT_EQ(bitmap->wholeness, Wholeness::kPart);
      const int shown = rowsShown(*bitmap);
      EXPECT_GT(shown, before) << part;
      EXPECT_LT(shown, bitmap->height) << part;
      before = shown;
      // What is shown is the picture's.
      const auto bytes = static_cast<std::size_t>(shown) * static_cast<std::size_t>(bitmap->width) * 4;
      EXPECT_TRUE(std::equal(bitmap->rgba.begin(), bitmap->rgba.begin() + static_cast<std::ptrdiff_t>(bytes),
                             all->rgba.begin()));
    }
    // Nothing but the mark of the end is missing.
    EXPECT_EQ(decoded(whole.substr(0, whole.size() - 2), {64, 64})->rgba, all->rgba);
    EXPECT_EQ(decoded(whole.substr(0, scan + 14)), nullptr);  // no row is there
    // Damaged in the middle.
    std::string damaged = whole;
    damaged.replace(scan + (whole.size() - scan) * 3 / 4, 4, "\xFF\xC5\xFF\xC5");
    const BitmapRef upper = decoded(damaged, {64, 64});
    ASSERT_NE(upper, nullptr);
    EXPECT_EQ(upper->wholeness, Wholeness::kPart);
    EXPECT_GT(rowsShown(*upper), 0);
  }
}

TEST(HostilePicture, ThatIsCutOffShowsTheScansOfAJpegThatAreThere) {
  const std::string whole = readFile(picturePath("progressive.jpg"));
  const std::size_t first = whole.find("\xFF\xDA"), second = whole.find("\xFF\xDA", first + 2);
  ASSERT_NE(second, std::string::npos);
  EXPECT_EQ(decoded(whole.substr(0, (first + second) / 2)), nullptr);
  const std::size_t third = whole.find("\xFF\xDA", second + 2);
  for (const std::size_t length : {second, third, whole.size() * 4 / 5}) {
    const BitmapRef bitmap = decoded(whole.substr(0, length));
    ASSERT_NE(bitmap, nullptr) << length;
    EXPECT_EQ(bitmap->wholeness, Wholeness::kPart);
    EXPECT_EQ(rowsShown(*bitmap), bitmap->height);
    expectQuarters(bitmap, kQuarters, 40);
  }
}

TEST(HostilePicture, ThatPacksMuchIntoLittleCostsLittleMemory) {
  // 9999 x 10000 pixels of nothing in less than a hundredth of their bytes.
  const std::string row(10000, '\0');
  std::string rows;
  for (int i = 0; i < 10000; ++i) rows += row;
  const std::string bomb = pngOf(9999, 10000, deflated(rows));
  rows = std::string();
  const std::size_t before = peakMemory();
  ASSERT_LT(bomb.size(), 1000000U);
  EXPECT_NE(decoded(bomb), nullptr);
  EXPECT_LT(peakMemory() - before, std::size_t{64} << 20);
}

TEST(HostilePicture, ThatMustStandInMemoryWholeIsBounded) {
  const std::size_t before = peakMemory();
  EXPECT_EQ(decoded(pngOf(9999, 10000, deflated(std::string(100000, '\0')), 1)), nullptr);
  EXPECT_LT(peakMemory() - before, std::size_t{64} << 20);
}

TEST(HostilePicture, WithHugeTextsIsDrawnWithoutReadingThem) {
  const std::string text = pngChunk("zTXt", std::string("a\0\0", 3) + deflated(std::string(50 << 20, 'x')));
  const std::string profile = pngChunk("iCCP", std::string("a\0\0", 3) + deflated(std::string(50 << 20, 'x')));
  const std::size_t before = peakMemory();
  const std::string png = pngOf(1, 1, deflated(std::string("\0\xFF", 2)), 0, profile + text + text);
  const BitmapRef bitmap = decoded(png);
  ASSERT_NE(bitmap, nullptr);
  EXPECT_EQ(pixelAt(*bitmap, 0, 0), (Pixel{255, 255, 255}));
  EXPECT_LT(peakMemory() - before, std::size_t{32} << 20);
}

TEST(HostilePicture, IsNotOpenedWhenItIsNoRegularFile) {
  const fake::TemporaryFolder folder;
  const std::string pipe = folder.path() + "/pipe.jpg";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(openPicture(pipe), nullptr);  // would wait for a writer for ever
  EXPECT_EQ(openPicture(folder.path()), nullptr);
  EXPECT_EQ(openPicture("/dev/zero"), nullptr);
  EXPECT_EQ(openPicture(""), nullptr);
  EXPECT_EQ(openPicture(picturePath("plain.jpg") + std::string("\0.png", 5)), nullptr);
}

TEST(HostilePicture, BeyondTheLimitOfBytesIsNotOpened) {
  const fake::TemporaryFolder folder;
  const std::string path = writeFile(folder.path() + "/a.png", readFile(picturePath("plain.png")));
  EXPECT_NE(openPicture(path), nullptr);
  ASSERT_EQ(truncate(path.c_str(), static_cast<off_t>(limits::kPictureFileBytes)), 0);
  EXPECT_NE(openPicture(path), nullptr);
  ASSERT_EQ(truncate(path.c_str(), static_cast<off_t>(limits::kPictureFileBytes + 1)), 0);
  EXPECT_EQ(openPicture(path), nullptr);
}

TEST(HostilePicture, ThatChangesAfterItWasOpenedDrawsNothing) {
  const fake::TemporaryFolder folder;
  const std::string path = writeFile(folder.path() + "/a.jpg", readFile(picturePath("plain.jpg")));
  const UIImageRef shrunk = openPicture(path);
  ASSERT_EQ(truncate(path.c_str(), 100), 0);
  EXPECT_TRUE(drawsNothing(shrunk));
  writeFile(path, readFile(picturePath("plain.jpg")));
  const UIImageRef gone = openPicture(path);
  unlink(path.c_str());
  EXPECT_TRUE(drawsNothing(gone));
  EXPECT_EQ(gone->size(), (Size{96, 64}));
}

/// Changes a few bytes anywhere, cuts bytes out or puts some in.
std::string changed(const std::string& whole, std::mt19937& random) {
  std::string bytes = whole;
  const auto below = [&](std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); };
  const std::size_t changes = 1 + below(4);
  for (std::size_t i = 0; i < changes && !bytes.empty(); ++i) {
    const std::size_t place = below(2) == 0 ? below(bytes.size()) : below(std::min<std::size_t>(bytes.size(), 120));
    switch (below(6)) {
      case 0:
        bytes.erase(place, 1 + below(8));
        break;
      case 1:
        bytes.insert(place, 1 + below(8), static_cast<char>(below(256)));
        break;
      case 2:
        bytes[place] = static_cast<char>(0xFF);
        break;
      case 3:
        bytes[place] = 0;
        break;
      default:
        bytes[place] = static_cast<char>(below(256));
        break;
    }
  }
  return bytes;
}

class Damaged : public ::testing::TestWithParam<std::string> {};

TEST_P(Damaged, PicturesAreDrawnOrNotAndNeverDoHarm) {
  constexpr int kTries = 300;
  const std::string whole = readFile(picturePath(GetParam()));
  std::mt19937 random(20240611);
  testing::internal::CaptureStderr();
  int shown = 0;
  for (int i = 0; i < kTries; ++i) {
    const BitmapRef bitmap = decoded(changed(whole, random));
    if (!bitmap) continue;
    ++shown;
    ASSERT_EQ(bitmap->rgba.size(),
              static_cast<std::size_t>(bitmap->width) * static_cast<std::size_t>(bitmap->height) * 4);
    ASSERT_LE(bitmap->width, 16);
    ASSERT_LE(bitmap->height, 16);
  }
  const std::string complaints = testing::internal::GetCapturedStderr();
  // The decoder of HEIC writes a line about some damaged pictures, and nothing can hold it back.
  EXPECT_TRUE(complaints.empty() || GetParam().ends_with(".heic")) << complaints;
  EXPECT_LT(shown, kTries);
}

INSTANTIATE_TEST_SUITE_P(Every, Damaged, ::testing::ValuesIn(everyKind()), testName);

}  // namespace
}  // namespace chatsum::platform::system
