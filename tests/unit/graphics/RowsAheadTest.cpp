#include "platform/system/graphics/RowsAhead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/PinnedFonts.h"

namespace chatsum::platform::system {
namespace {

const UIFont kFont{"Verdana", 14};
constexpr double kWidth = 250;

/// Rows of texts; what begins with "/" is a picture.
class Rows final : public ExpectedRows {
 public:
  explicit Rows(std::vector<std::vector<std::string>> rows) : rows_(std::move(rows)) {}
  [[nodiscard]] std::size_t count() const override { return rows_.size(); }
  [[nodiscard]] std::unique_ptr<ExpectedRowReader> reader() const override {
    struct Reader final : ExpectedRowReader {
      explicit Reader(const Rows& all) : rows(all) {}
      void read(std::size_t row, ExpectedCells& cells) override {
        for (const std::string& cell : rows.rows_[row]) {
          if (cell.starts_with("/")) {
            cells.picture(cell, 64);
          } else {
            cells.text(cell);
          }
        }
      }
      const Rows& rows;
    };
    return std::make_unique<Reader>(*this);
  }
  [[nodiscard]] const std::vector<std::vector<std::string>>& all() const { return rows_; }

 private:
  std::vector<std::vector<std::string>> rows_;
};

Rows manyRows(int count) {
  std::vector<std::vector<std::string>> rows;
  for (int i = 0; i < count; ++i) rows.push_back({"Name " + std::to_string(i % 7), "Text of row " + std::to_string(i)});
  return Rows(std::move(rows));
}

class RowsAheadTest : public ::testing::TestWithParam<unsigned> {
 protected:
  WorkPool pool{GetParam()};
  test::PinnedFonts fonts;
  TextEngine engine;
};

TEST_P(RowsAheadTest, HandsOutEveryTextInItsOrder) {
  const Rows rows = manyRows(3000);
  RowsAhead ahead(rows, kFont, kWidth, engine, pool, {});
  for (const auto& row : rows.all()) {
    for (const std::string& cell : row) {
      const auto text = ahead.take(cell, kFont, kWidth);
      ASSERT_TRUE(text) << cell;
      ASSERT_EQ(text->text, cell);
      LayoutStore store;
      engine.layOut(cell, kFont, kWidth, LineBreakMode::kWordWrap, store);
      ASSERT_EQ(text->layout.size, store[0].size);
      ASSERT_EQ(text->layout.pieces.size(), store[0].pieces.size());
    }
  }
  EXPECT_FALSE(ahead.take("one more", kFont, kWidth));
}

TEST_P(RowsAheadTest, PassesOverTextsThatAreNotDrawn) {
  const Rows rows = manyRows(600);
  RowsAhead ahead(rows, kFont, kWidth, engine, pool, {});
  for (std::size_t row = 0; row < rows.count(); row += 3) EXPECT_TRUE(ahead.take(rows.all()[row][1], kFont, kWidth));
}

TEST_P(RowsAheadTest, DoesNotKnowTextsThatWereNotExpected) {
  const Rows rows = manyRows(10);
  RowsAhead ahead(rows, kFont, kWidth, engine, pool, {});
  EXPECT_FALSE(ahead.take("unexpected", kFont, kWidth));
  EXPECT_FALSE(ahead.take("Name 0", UIFont{"Verdana", 10}, kWidth));
  EXPECT_FALSE(ahead.take("Name 0", kFont, 100));
  EXPECT_TRUE(ahead.take("Name 0", kFont, kWidth));
}

TEST_P(RowsAheadTest, PreparesPicturesAndTellsHowFarItIs) {
  std::vector<std::vector<std::string>> all;
  for (int i = 0; i < 1100; ++i) all.push_back({"Name", "/picture " + std::to_string(i)});
  const Rows rows(std::move(all));
  std::atomic<int> pictures = 0;
  std::vector<std::pair<std::size_t, std::size_t>> told;
  {
    RowsAhead ahead(rows, kFont, kWidth, engine, pool,
                    {.preparePicture = [&](const std::string&, double side) { pictures += side == 64; },
                     .progress = [&](std::size_t done, std::size_t total) { told.emplace_back(done, total); }});
    for (std::size_t i = 0; i < rows.count(); ++i) ASSERT_TRUE(ahead.take("Name", kFont, kWidth));
    EXPECT_FALSE(ahead.take("Name", kFont, kWidth));
  }
  EXPECT_EQ(pictures, 1100);
  ASSERT_EQ(told.size(), 2U);  // the third chunk is the last one
  EXPECT_LT(told[0].first, told[1].first);
  EXPECT_EQ(told[1].second, 1100U);
}

TEST_P(RowsAheadTest, CanBeLeftInTheMiddle) {
  const Rows rows = manyRows(20'000);
  RowsAhead ahead(rows, kFont, kWidth, engine, pool, {});
  EXPECT_TRUE(ahead.take(rows.all()[0][0], kFont, kWidth));
}

TEST_P(RowsAheadTest, HasNothingForNoRows) {
  const Rows rows = manyRows(0);
  RowsAhead ahead(rows, kFont, kWidth, engine, pool, {});
  EXPECT_FALSE(ahead.take("", kFont, kWidth));
}

INSTANTIATE_TEST_SUITE_P(Threads, RowsAheadTest, ::testing::Values(0U, 1U, 3U));

}  // namespace
}  // namespace chatsum::platform::system
