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
  EXPECT_EQ((Balance{.inStore = 2, .read = 2, .written = 2}.sentence(Done::kShown)),
            "Rows: 2 in the store = 2 shown + 0 left out.");
}

TEST(Balance, CountsRowsOfWordsOnBothSides) {
  const Balance balance{.inStore = 9,
                        .wordsBesideFiles = 2,
                        .read = 5,
                        .reactionsShown = 1,
                        .reactionsTakenBack = 2,
                        .previewFiles = 1,
                        .stickers = 1,
                        .missingFiles = 1,
                        .written = 5};
  EXPECT_TRUE(balance.holds());
  EXPECT_EQ(balance.sentence(),
            "Rows: 9 in the store + 2 for words beside files = 5 written + 6 left out (1 reaction shown with its "
            "message, 2 reactions taken back or changed, 1 link-preview file, 1 sticker told in words, 1 file not on "
            "the device, told in words).");
  EXPECT_FALSE((Balance{.inStore = 9, .wordsBesideFiles = 2, .read = 9, .written = 9}.holds()));
}

TEST(Balance, DoesNotHoldWhenARowIsMissing) {
  EXPECT_FALSE((Balance{.inStore = 3, .read = 2, .written = 2}.holds()));
  EXPECT_FALSE((Balance{.inStore = 3, .read = 3, .written = 2}.holds()));
  EXPECT_FALSE((Balance{.inStore = 2, .read = 3, .written = 3}.holds()));
  EXPECT_EQ((Balance{.inStore = 3, .read = 2, .written = 2}.sentence()),
            "Rows: 3 in the store is not 2 written + 0 left out.");
}

TEST(Balance, CountsTheRowsOfTextsThatGoOn) {
  const Balance balance{.inStore = 2, .read = 2, .continued = 3, .written = 5};
  EXPECT_TRUE(balance.holds());
  EXPECT_EQ(balance.sentence(), "Rows: 2 in the store + 3 for texts that go on = 5 written + 0 left out.");
  EXPECT_FALSE((Balance{.inStore = 2, .read = 2, .continued = 3, .written = 2}.holds()));
}

}  // namespace
}  // namespace chatsum::device
