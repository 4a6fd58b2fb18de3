#include <limits>

#include "libchatsum/ChatsumUtils/MessageRecord.h"
#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

TEST(StoredDate, TakesTheFirstNineDigitsOfANanosecondCountSince2001) {
  EXPECT_EQ(secondsFromStoredDate(600'000'000'123'456'789), 1'578'307'200);
  EXPECT_EQ(secondsFromStoredDate(600'000'000'999'999'999), 1'578'307'200);
}

TEST(StoredDate, KeepsOldSecondsAsSecondsSince1970) {
  EXPECT_EQ(secondsFromStoredDate(500'000'000), 500'000'000);
  EXPECT_EQ(secondsFromStoredDate(999'999'999), 999'999'999);
  EXPECT_EQ(secondsFromStoredDate(0), 0);
  EXPECT_EQ(secondsFromStoredDate(1), 1);
}

TEST(StoredDate, ChangesItsRuleAboveAThousandMillions) {
  EXPECT_EQ(secondsFromStoredDate(1'000'000'000), 1'000'000'000);
  EXPECT_EQ(secondsFromStoredDate(1'000'000'001), 100'000'000 + 978'307'200);
  EXPECT_EQ(secondsFromStoredDate(9'999'999'999), 999'999'999 + 978'307'200);
}

TEST(StoredDate, KeepsNegativeNumbers) {
  EXPECT_EQ(secondsFromStoredDate(-1), -1);
  EXPECT_EQ(secondsFromStoredDate(-600'000'000'123'456'789), -600'000'000'123'456'789);
  EXPECT_EQ(secondsFromStoredDate(std::numeric_limits<std::int64_t>::min()), std::numeric_limits<std::int64_t>::min());
}

TEST(StoredDate, CutsCountsOfOtherLengthsToNineDigitsToo) {
  EXPECT_EQ(secondsFromStoredDate(12'345'678'912'345'678), 123'456'789 + 978'307'200);     // 17 digits
  EXPECT_EQ(secondsFromStoredDate(1'234'567'891'234'567'891), 123'456'789 + 978'307'200);  // 19 digits
  EXPECT_EQ(secondsFromStoredDate(std::numeric_limits<std::int64_t>::max()), 922'337'203 + 978'307'200);
}

class DateOfARecord : public ReadingTest {};

TEST_F(DateOfARecord, IsAWholeSecondSince1970) {
  addMessage({.date = 600'000'000'123'456'789});
  EXPECT_EQ(read().at(0, "Date"), Value(Date{1'578'307'200}));
  EXPECT_EQ(read().at(0, "Date").description(), "2020-01-06 10:40:00 +0000");
}

TEST_F(DateOfARecord, HasNoOffsetForAnOldSecondsValue) {
  addMessage({.date = 500'000'000});
  EXPECT_EQ(read().at(0, "Date"), Value(Date{500'000'000}));
  EXPECT_EQ(read().at(0, "Date").description(), "1985-11-05 00:53:20 +0000");
}

}  // namespace
}  // namespace chatsum::tests
