#include "hosts/device/report/Balance.h"

#include <gtest/gtest.h>

namespace chatsum::device {
namespace {

TEST(Balance, NamesEachReason) {
  Balance balance{.inStore = 12,
                  .read = 9,
                  .withoutText = 2,
                  .unreadableBody = 1,
                  .excluded = 3,
                  .outsideTimes = 1,
                  .undatedOutside = 1,
                  .written = 4};
  EXPECT_TRUE(balance.holds());
  EXPECT_EQ(balance.sentence(),
            "Rows: 12 in the store = 4 written + 8 left out (2 without text, 1 with an unreadable body, 3 excluded, 1 "
            "outside "
            "the times, 1 without a date).");
  EXPECT_EQ((Balance{.inStore = 2, .read = 2, .written = 2}.sentence("shown")),
            "Rows: 2 in the store = 2 shown + 0 left out.");
}

TEST(Balance, DoesNotHoldWhenARowIsMissing) {
  EXPECT_FALSE((Balance{.inStore = 3, .read = 2, .written = 2}.holds()));
  EXPECT_FALSE((Balance{.inStore = 3, .read = 3, .written = 2}.holds()));
  EXPECT_FALSE((Balance{.inStore = 2, .read = 3, .written = 3}.holds()));
  EXPECT_EQ((Balance{.inStore = 3, .read = 2, .written = 2}.sentence()),
            "Rows: 3 in the store is not 2 written + 0 left out.");
}

}  // namespace
}  // namespace chatsum::device
