#include <gtest/gtest.h>

#include <string>

#include "tests/unit/images/Pictures.h"

namespace chatsum::platform::system {
namespace {

// Whoever cuts something off a picture, or makes it unrecognizable, often leaves the preview as it was.
TEST(SmallPictureInside, IsNeverDrawnForThePicture) {
  // 480 x 320 pixels; the small ones of the JPEGs have one colour of their own, two of the others lie another way
  // round.
  for (const char* name : {"small-inside.jpg", "too-small-inside.jpg", "other-shape-inside.jpg", "small-inside.heic",
                           "turned.heic", "turned-small-not.heic", "half-turned-small-not.heic"}) {
    SCOPED_TRACE(name);
    const UIImageRef image = openPicture(picturePath(name));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (Size{480, 320}));
    const UIImageRef middle = image->croppedTo({{80, 0}, {320, 320}});
    for (const double side : {16, 64, 100, 101}) expectQuarters(drawnOn({side, side}, middle), kQuarters, 25);
    expectQuarters(drawnOn({150, 100}, image), kQuarters, 25);
    expectQuarters(drawnOn({480, 320}, image), kQuarters, 25);
  }
}

}  // namespace
}  // namespace chatsum::platform::system
