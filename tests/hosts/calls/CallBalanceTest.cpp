#include "hosts/device/calls/CallBalance.h"

#include <gtest/gtest.h>

namespace chatsum::device {
namespace {

TEST(CallBalance, SaysWhereCallsAreAndWhyTheyAreLeftOut) {
  CallBalance balance{.inLists = 10, .read = 10, .written = 10};
  EXPECT_EQ(balance.sentence(), "Calls: 10 in the list = 10 written + 0 left out.");
  balance = {.inLists = 16,
             .inTemporary = 3,
             .inOld = 2,
             .read = 16,
             .duplicates = 1,
             .otherApps = 2,
             .otherPeople = 3,
             .outsideTimes = 4,
             .undatedOutside = 1,
             .written = 5};
  EXPECT_TRUE(balance.holds());
  EXPECT_EQ(balance.sentence(Done::kShown),
            "Calls: 16 in the lists (11 in the main one, 3 in the temporary one, 2 in the old one) = 5 shown + 11 left "
            "out (1 found twice, 2 of other apps, 3 with other people, 4 outside the times, 1 without a date).");
}

TEST(CallBalance, ShowsThatItDoesNotHold) {
  CallBalance balance{.inLists = 10, .read = 9, .written = 9};
  EXPECT_FALSE(balance.holds());
  EXPECT_NE(balance.sentence().find("is not"), std::string::npos);
  balance = {.inLists = 10, .read = 9, .written = 10};
  EXPECT_FALSE(balance.holds());
}

}  // namespace
}  // namespace chatsum::device
