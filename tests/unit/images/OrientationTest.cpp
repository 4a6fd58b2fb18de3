#include <gtest/gtest.h>

#include <string>

#include "platform/fake/TemporaryFolder.h"
#include "platform/system/images/formats/Exif.h"
#include "tests/unit/images/Pictures.h"

namespace chatsum::platform::system {
namespace {

TEST(Orientation, SetsEveryTaggedPictureUpright) {
  for (int tag = 1; tag <= 8; ++tag) {
    SCOPED_TRACE(tag);
    const UIImageRef image = openPicture(picturePath("turned-" + std::to_string(tag) + ".jpg"));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (Size{96, 64}));
    expectQuarters(drawnOn({96, 64}, image));
    expectQuarters(drawnOn({30, 20}, image));
  }
}

TEST(Orientation, IsReadFromEveryKindThatCarriesIt) {
  for (const char* name : {"turned-6.png", "turned-6.tif", "turned-6.webp"}) {
    SCOPED_TRACE(name);
    const UIImageRef image = openPicture(picturePath(name));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (Size{96, 64}));
    expectQuarters(drawnOn({96, 64}, image));
  }
}

TEST(Orientation, CutsOutOfTheUprightPicture) {
  for (int tag = 1; tag <= 8; ++tag) {
    SCOPED_TRACE(tag);
    const UIImageRef image = openPicture(picturePath("turned-" + std::to_string(tag) + ".jpg"));
    // 40 x 24 pixels of the lower right quarter, then of the upper left one.
    expectQuarters(drawnOn({10, 6}, image->croppedTo({{52, 36}, {40, 24}})), {kYellow, kYellow, kYellow, kYellow});
    expectQuarters(drawnOn({10, 6}, image->croppedTo({{4, 4}, {40, 24}})), {kRed, kRed, kRed, kRed});
    expectQuarters(drawnOn({32, 16}, image->croppedTo({{32, 24}, {32, 16}})));
  }
}

TEST(Orientation, MapsAnUprightRectangleToTheStoredOne) {
  const PixelSize stored{10, 6};
  // Each corner pixel of the upright picture is where the tag's definition puts it.
  const PixelRect topLeft{0, 0, 1, 1};
  EXPECT_EQ(Orientation::ofTag(1).toStored(topLeft, stored), (PixelRect{0, 0, 1, 1}));
  EXPECT_EQ(Orientation::ofTag(2).toStored(topLeft, stored), (PixelRect{9, 0, 1, 1}));
  EXPECT_EQ(Orientation::ofTag(3).toStored(topLeft, stored), (PixelRect{9, 5, 1, 1}));
  EXPECT_EQ(Orientation::ofTag(4).toStored(topLeft, stored), (PixelRect{0, 5, 1, 1}));
  EXPECT_EQ(Orientation::ofTag(5).toStored(topLeft, stored), (PixelRect{0, 0, 1, 1}));
  EXPECT_EQ(Orientation::ofTag(6).toStored(topLeft, stored), (PixelRect{0, 5, 1, 1}));
  EXPECT_EQ(Orientation::ofTag(7).toStored(topLeft, stored), (PixelRect{9, 5, 1, 1}));
  EXPECT_EQ(Orientation::ofTag(8).toStored(topLeft, stored), (PixelRect{9, 0, 1, 1}));
  EXPECT_EQ(Orientation::ofTag(6).toStored({1, 2, 3, 4}, stored), (PixelRect{2, 2, 4, 3}));
  EXPECT_EQ(Orientation::ofTag(0), Orientation());
  EXPECT_EQ(Orientation::ofTag(9), Orientation());
}

/// Exif data of one entry: byte order, the first directory at 8 with `count` entries, one entry.
std::string exif(bool isBig, int tag, int value, int count = 1) {
  const auto number = [&](unsigned long n, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(n >> (8 * (isBig ? bytes - 1 - i : i)) & 0xFF);
    return text;
  };
  const auto n = [](int of) { return static_cast<unsigned long>(of); };
  return std::string(isBig ? "MM" : "II") + number(42, 2) + number(8, 4) + number(n(count), 2) + number(n(tag), 2) +
         number(3, 2) + number(1, 4) + number(n(value), 2) + number(0, 2) + number(0, 4);
}

TEST(Exif, IsReadInBothByteOrders) {
  EXPECT_EQ(orientationIn(exif(false, 0x0112, 6)), Orientation::ofTag(6));
  EXPECT_EQ(orientationIn(exif(true, 0x0112, 8)), Orientation::ofTag(8));
  EXPECT_EQ(orientationIn(exif(true, 0x0100, 8)), Orientation());
}

TEST(Exif, ThatIsDamagedIsAsIfItWereNotThere) {
  EXPECT_EQ(orientationIn(""), Orientation());
  EXPECT_EQ(orientationIn("II"), Orientation());
  EXPECT_EQ(orientationIn("XX*\0aaaa"), Orientation());
  EXPECT_EQ(orientationIn(exif(false, 0x0112, 77)), Orientation());
  EXPECT_EQ(orientationIn(exif(false, 0x0112, 6, 60000)), Orientation());  // promises more entries than it holds
  const std::string whole = exif(false, 0x0112, 6);
  constexpr std::size_t kWithoutItsValue = 18;
  for (std::size_t length = 0; length <= kWithoutItsValue; ++length) {
    EXPECT_EQ(orientationIn(std::string_view(whole).substr(0, length)), Orientation()) << length;
  }
}

TEST(Exif, ThatIsDamagedLeavesThePictureToBeDrawn) {
  const fake::TemporaryFolder folder;
  const std::string whole = readFile(picturePath("turned-6.jpg"));
  const std::size_t begin = whole.find("Exif");
  ASSERT_NE(begin, std::string::npos);
  for (std::size_t place = begin + 6; place < begin + 40; ++place) {
    std::string bytes = whole;
    bytes[place] = static_cast<char>(0xFF);
    const UIImageRef image = openPicture(writeFile(folder.path() + "/a.jpg", bytes));
    ASSERT_NE(image, nullptr) << place;
    EXPECT_FALSE(drawsNothing(image)) << place;
  }
}

}  // namespace
}  // namespace chatsum::platform::system
