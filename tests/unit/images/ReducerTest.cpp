#include <gtest/gtest.h>

#include <vector>

#include "platform/system/images/PictureReducer.h"
#include "tests/unit/images/Pictures.h"

namespace chatsum::platform::system {
namespace {

/// Feeds a picture whose pixels `color` gives.
template <typename Color>
Bitmap reduced(PixelSize full, PixelSize decoded, const PixelRect& crop, PixelSize wanted, Color color) {
  PictureReducer reducer(full, crop, wanted);
  reducer.begin(decoded);
  std::vector<std::uint8_t> row;
  for (int y = 0; y < decoded.height; ++y) {
    row.clear();
    for (int x = 0; x < decoded.width; ++x) {
      const Pixel pixel = color(x, y);
      for (const int value : {pixel.red, pixel.green, pixel.blue, pixel.alpha}) {
        row.push_back(static_cast<std::uint8_t>(value));
      }
    }
    reducer.addRow(row.data());
  }
  return reducer.take();
}

Pixel checkers(int x, int y) { return (x + y) % 2 == 0 ? Pixel{200, 0, 0} : Pixel{0, 100, 0}; }

TEST(Reducer, KeepsPixelsThatNeedNoReduction) {
  const Bitmap bitmap = reduced({8, 6}, {8, 6}, {2, 1, 4, 4}, {4, 4}, [](int x, int y) { return Pixel{x, y, 7}; });
  ASSERT_EQ(bitmap.width, 4);
  ASSERT_EQ(bitmap.height, 4);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) EXPECT_EQ(pixelAt(bitmap, x, y), (Pixel{x + 2, y + 1, 7}));
  }
}

TEST(Reducer, AveragesWholePixels) {
  const Bitmap bitmap = reduced({8, 8}, {8, 8}, {0, 0, 8, 8}, {2, 2}, checkers);
  ASSERT_EQ(bitmap.width, 2);
  for (const auto& pixel : quartersOf(bitmap)) EXPECT_EQ(pixel, (Pixel{100, 50, 0}));
}

TEST(Reducer, AveragesPartsOfPixels) {
  // Five columns become two: the middle one is shared.
  const Bitmap bitmap = reduced({5, 1}, {5, 1}, {0, 0, 5, 1}, {2, 1}, [](int x, int) {
    return Pixel{x == 2 ? 250 : 0, 0, 0};
  });
  ASSERT_EQ(bitmap.width, 2);
  EXPECT_EQ(pixelAt(bitmap, 0, 0), (Pixel{50, 0, 0}));
  EXPECT_EQ(pixelAt(bitmap, 1, 0), (Pixel{50, 0, 0}));
  const Bitmap column = reduced({1, 5}, {1, 5}, {0, 0, 1, 5}, {1, 2}, [](int, int y) {
    return Pixel{y == 2 ? 250 : 0, 0, 0};
  });
  ASSERT_EQ(column.height, 2);
  EXPECT_EQ(pixelAt(column, 0, 0), (Pixel{50, 0, 0}));
  EXPECT_EQ(pixelAt(column, 0, 1), (Pixel{50, 0, 0}));
}

TEST(Reducer, NeverEnlarges) {
  const Bitmap bitmap = reduced({4, 4}, {4, 4}, {0, 0, 4, 2}, {100, 1}, checkers);
  EXPECT_EQ(bitmap.width, 4);
  EXPECT_EQ(bitmap.height, 1);
  EXPECT_EQ(pixelAt(bitmap, 0, 0), (Pixel{100, 50, 0}));
}

TEST(Reducer, CountsTheCropInTheFullPictureThoughItIsDecodedSmall) {
  // 100 x 80 decoded at a quarter; the lower right quarter is another colour.
  const Bitmap bitmap = reduced({100, 80}, {25, 20}, {50, 40, 40, 40}, {5, 5}, [](int x, int y) {
    return x >= 12 && y >= 10 ? Pixel{9, 9, 9} : Pixel{200, 0, 0};
  });
  ASSERT_EQ(bitmap.width, 5);
  ASSERT_EQ(bitmap.height, 5);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(pixelAt(bitmap, i, i), (Pixel{9, 9, 9}));
}

TEST(Reducer, DoesNotLetClearPixelsColourTheOthers) {
  const Bitmap bitmap = reduced({2, 2}, {2, 2}, {0, 0, 2, 2}, {1, 1}, [](int x, int) {
    return x == 0 ? Pixel{0, 200, 0, 255} : Pixel{255, 0, 255, 0};
  });
  EXPECT_EQ(pixelAt(bitmap, 0, 0), (Pixel{0, 200, 0, 128}));
}

TEST(Reducer, GivesNothingWhenRowsAreMissing) {
  for (const int rows : {0, 1, 7}) {
    PictureReducer reducer({8, 8}, {0, 0, 8, 8}, {4, 4});
    reducer.begin({8, 8});
    const std::vector<std::uint8_t> row(32, 255);
    for (int y = 0; y < rows; ++y) reducer.addRow(row.data());
    EXPECT_TRUE(reducer.take().isEmpty()) << rows;
  }
  PictureReducer never({8, 8}, {0, 0, 8, 8}, {4, 4});
  EXPECT_TRUE(never.take().isEmpty());
}

TEST(Reducer, CoversEverySizeWithoutGaps) {
  for (int full = 1; full <= 40; ++full) {
    for (int wanted = 1; wanted <= full; ++wanted) {
      const Bitmap bitmap = reduced({full, full}, {full, full}, {0, 0, full, full}, {wanted, wanted}, [](int, int) {
        return Pixel{30, 60, 90};
      });
      ASSERT_EQ(bitmap.width, wanted) << full;
      ASSERT_EQ(bitmap.height, wanted) << full;
      for (int i = 0; i < wanted; ++i) ASSERT_EQ(pixelAt(bitmap, i, wanted - 1 - i), (Pixel{30, 60, 90})) << full;
    }
  }
}

TEST(Reducer, KnowsWhatIsEnough) {
  const PictureReducer reducer({4000, 3000}, {500, 0, 3000, 3000}, {64, 64});
  EXPECT_TRUE(reducer.isEnough({4000, 3000}));
  EXPECT_TRUE(reducer.isEnough({160, 120}));
  EXPECT_FALSE(reducer.isEnough({80, 60}));
  const PictureReducer tiny({20, 10}, {0, 0, 10, 10}, {64, 64});
  EXPECT_TRUE(tiny.isEnough({20, 10}));
  EXPECT_FALSE(tiny.isEnough({10, 5}));
}

}  // namespace
}  // namespace chatsum::platform::system
