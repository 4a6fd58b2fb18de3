#include "hosts/desktop/engine/RowTicks.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <vector>

namespace chatsum::desktop {
namespace {

std::vector<std::size_t> tickedIn(const RowTicks& ticks) {
  std::vector<std::size_t> rows;
  ticks.forEach([&](std::size_t row) { rows.push_back(row); });
  return rows;
}

TEST(RowTicksTest, NothingIsTickedAtFirst) {
  const RowTicks ticks(130);
  EXPECT_EQ(ticks.rows(), 130U);
  EXPECT_EQ(ticks.count(), 0U);
  EXPECT_TRUE(tickedIn(ticks).empty());
  EXPECT_FALSE(ticks.has(129));
}

TEST(RowTicksTest, AStretchMayBeginAndEndAnywhere) {
  for (const auto& [first, last] : std::vector<std::pair<std::size_t, std::size_t>>{
           {0, 0}, {0, 63}, {63, 64}, {64, 127}, {1, 128}, {129, 129}, {0, 129}}) {
    RowTicks ticks(130);
    ticks.set(first, last, true);
    EXPECT_EQ(ticks.count(), last - first + 1);
    for (std::size_t row = 0; row < 130; ++row) EXPECT_EQ(ticks.has(row), row >= first && row <= last) << row;
  }
}

TEST(RowTicksTest, WhatIsNoRowIsPassedOver) {
  RowTicks ticks(10);
  ticks.set(8, 1000, true);
  EXPECT_EQ(tickedIn(ticks), (std::vector<std::size_t>{8, 9}));
  ticks.set(10, 20, true);
  ticks.set(5, 4, true);
  EXPECT_EQ(ticks.count(), 2U);
  EXPECT_FALSE(ticks.has(10));
  RowTicks none;
  none.set(0, 5, true);
  EXPECT_EQ(none.count(), 0U);
}

TEST(RowTicksTest, IsAsASetOfNumbers) {
  constexpr std::size_t kRows = 500;
  std::mt19937 random(7);
  RowTicks ticks(kRows);
  std::set<std::size_t> expected;
  for (int i = 0; i < 2000; ++i) {
    const std::size_t first = random() % kRows, last = first + random() % 90;
    const bool isTicked = random() % 2 == 0;
    ticks.set(first, last, isTicked);
    for (std::size_t row = first; row <= last && row < kRows; ++row) {
      if (isTicked) {
        expected.insert(row);
      } else {
        expected.erase(row);
      }
    }
    ASSERT_EQ(ticks.count(), expected.size());
  }
  EXPECT_EQ(tickedIn(ticks), std::vector<std::size_t>(expected.begin(), expected.end()));
}

}  // namespace
}  // namespace chatsum::desktop
