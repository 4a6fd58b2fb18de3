#include <gtest/gtest.h>

#include <string>

#include "platform/system/images/formats/HeifTransforms.h"
#include "tests/unit/images/Pictures.h"

namespace chatsum::platform::system {
namespace {

constexpr std::array<Pixel, 4> kInside{kSmallInside, kSmallInside, kSmallInside, kSmallInside};

TEST(SmallPictureInside, IsDrawnWhenItIsEnough) {
  const UIImageRef image = openPicture(picturePath("small-inside.jpg"));  // 480 x 320, inside 150 x 100
  ASSERT_NE(image, nullptr);
  const UIImageRef middle = image->croppedTo({{80, 0}, {320, 320}});
  expectQuarters(drawnOn({64, 64}, middle), kInside);
  expectQuarters(drawnOn({100, 100}, middle), kInside);
  expectQuarters(drawnOn({101, 101}, middle));
  expectQuarters(drawnOn({150, 100}, image), kInside);
  expectQuarters(drawnOn({480, 320}, image));
  // A part of the picture has less of the small one, too.
  expectQuarters(drawnOn({64, 64}, image->croppedTo({{180, 100}, {120, 120}})));
}

TEST(SmallPictureInside, IsNotDrawnWhenItIsTooSmallOrOfAnotherShape) {
  for (const char* name : {"too-small-inside.jpg", "other-shape-inside.jpg"}) {
    SCOPED_TRACE(name);
    const UIImageRef image = openPicture(picturePath(name));
    ASSERT_NE(image, nullptr);
    expectQuarters(drawnOn({64, 64}, image->croppedTo({{80, 0}, {320, 320}})));
  }
}

TEST(SmallPictureInside, OfAHeifFileIsTurnedLikeItsPicture) {
  for (const char* name : {"small-inside.heic", "turned.heic", "turned-small-not.heic", "half-turned-small-not.heic"}) {
    SCOPED_TRACE(name);
    const UIImageRef image = openPicture(picturePath(name));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (Size{480, 320}));
    expectQuarters(drawnOn({64, 64}, image->croppedTo({{80, 0}, {320, 320}})), kQuarters, 25);
    expectQuarters(drawnOn({480, 320}, image), kQuarters, 25);
  }
}

TEST(SmallPictureInside, OfAHeifFileCountsOnlyWithTheSameTurns) {
  const auto areEqual = [](const std::string& name) {
    const std::string content = readFile(picturePath(name));
    PictureBytes bytes(content);
    constexpr std::uint32_t kPicture = 1, kInsideItem = 2;
    return HeifTransforms(bytes).areEqual(kPicture, kInsideItem);
  };
  EXPECT_TRUE(areEqual("small-inside.heic"));
  EXPECT_TRUE(areEqual("turned.heic"));
  EXPECT_FALSE(areEqual("turned-small-not.heic"));
  EXPECT_FALSE(areEqual("half-turned-small-not.heic"));
}

}  // namespace
}  // namespace chatsum::platform::system
