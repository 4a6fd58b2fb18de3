#include "hosts/device/report/TimeRange.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace chatsum::device {
namespace {

void useZone(const char* zone) {
  ::setenv("TZ", zone, 1);
  ::tzset();
}

double secondsOf(const char* text) {
  const auto date = parseTime(text);
  EXPECT_TRUE(date.has_value()) << text;
  return date ? date->secondsSince1970 : -1;
}

TEST(TimeRange, ReadsDaysAndTimesInTheLocalZone) {
  useZone("America/New_York");
  EXPECT_EQ(secondsOf("2020-01-06"), 1578286800);
  EXPECT_EQ(secondsOf("2020-01-06T05:40"), 1578307200);
  EXPECT_EQ(secondsOf("2020-01-06 05:40:00.5"), 1578307200.5);
  EXPECT_EQ(secondsOf("2020-07-06T05:40"), 1594028400);  // summer time
}

TEST(TimeRange, ReadsOffsets) {
  useZone("America/New_York");
  EXPECT_EQ(secondsOf("2020-01-06T10:40:00Z"), 1578307200);
  EXPECT_EQ(secondsOf("2020-01-06t10:40z"), 1578307200);
  EXPECT_EQ(secondsOf("2020-01-06T12:40+02:00"), 1578307200);
  EXPECT_EQ(secondsOf("2020-01-06T05:10:00-0530"), 1578307200);
  EXPECT_EQ(secondsOf("2020-01-06T12:40+02"), 1578307200);
}

TEST(TimeRange, RefusesWhatIsNoTime) {
  for (const char* text : {"",
                           "yesterday",
                           "2020",
                           "2020-13-01",
                           "2020-02-30",
                           "2021-02-29",
                           "2020-00-10",
                           "2020-01-06T",
                           "2020-01-06T24:00",
                           "2020-01-06T10:60",
                           "2020-01-06T10",
                           "2020-01-06T10:40:00.",
                           "2020-1-6",
                           "2020-01-06T10:40+2",
                           "2020-01-06Z",
                           "2020-01-06T10:40 ",
                           " 2020-01-06",
                           "06.01.2020",
                           "2020-01-06T10:40+19:00",
                           "0000-01-01"}) {
    EXPECT_FALSE(parseTime(text).has_value()) << text;
  }
}

TEST(TimeRange, CountsTheLastDayToItsEnd) {
  useZone("Europe/Berlin");
  TimeRange range;
  ASSERT_TRUE(setSince(range, "2024-03-31"));
  ASSERT_TRUE(setUntil(range, "2024-03-31"));  // a day of 23 hours
  EXPECT_TRUE(range.contains(*parseTime("2024-03-31T00:00:00")));
  EXPECT_TRUE(range.contains(*parseTime("2024-03-31T23:59:59.9")));
  EXPECT_FALSE(range.contains(*parseTime("2024-04-01")));
  EXPECT_FALSE(range.contains(*parseTime("2024-03-30T23:59:59")));
}

TEST(TimeRange, CountsTheLastDayOfAMonthAndYear) {
  useZone("UTC");
  TimeRange range;
  ASSERT_TRUE(setUntil(range, "2023-12-31"));
  EXPECT_TRUE(range.contains(*parseTime("2023-12-31T23:59:59")));
  EXPECT_FALSE(range.contains(*parseTime("2024-01-01")));
}

TEST(TimeRange, HoldsBothItsEnds) {
  useZone("UTC");
  TimeRange range;
  ASSERT_TRUE(setSince(range, "2024-01-01T10:00"));
  ASSERT_TRUE(setUntil(range, "2024-01-01T11:00"));
  EXPECT_TRUE(range.contains(*parseTime("2024-01-01T10:00")));
  EXPECT_TRUE(range.contains(*parseTime("2024-01-01T11:00")));
  EXPECT_FALSE(range.contains(*parseTime("2024-01-01T11:00:01")));
}

TEST(TimeRange, KnowsWhenNothingCanBeInside) {
  useZone("UTC");
  TimeRange range;
  EXPECT_TRUE(range.isOpen());
  ASSERT_TRUE(setSince(range, "2024-01-02"));
  EXPECT_FALSE(range.isEmpty());
  ASSERT_TRUE(setUntil(range, "2024-01-01"));
  EXPECT_TRUE(range.isEmpty());
  ASSERT_TRUE(setUntil(range, "2024-01-02"));
  EXPECT_FALSE(range.isEmpty());
}

TEST(TimeRange, WritesTimesWithTheOffsetOfTheirDay) {
  useZone("America/New_York");
  EXPECT_EQ(isoTime(Date{1578307200}), "2020-01-06T05:40:00-05:00");
  EXPECT_EQ(isoTime(Date{1594028400.9}), "2020-07-06T05:40:00-04:00");
  useZone("Asia/Kolkata");
  EXPECT_EQ(isoTime(Date{1578307200}), "2020-01-06T16:10:00+05:30");
  useZone("UTC");
  EXPECT_EQ(isoTime(Date{-0.5}), "1969-12-31T23:59:59+00:00");
}

}  // namespace
}  // namespace chatsum::device
