#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"

namespace chatsum::test {
namespace {

using platform::DateStyle;

constexpr Date kMondayMorning{1578307200};  // 2020-01-06 10:40 UTC

class SharedDateFormatter : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};
  DateFormatter& formatter = ChatsumUtils::dateFormatter();
};

TEST_F(SharedDateFormatter, IsOneObjectForManyThreadsAtOnce) {
  std::vector<DateFormatter*> seen(16);
  {
    std::vector<std::jthread> threads;
    for (auto& place : seen) threads.emplace_back([&place] { place = &ChatsumUtils::dateFormatter(); });
  }
  seen.push_back(&formatter);
  EXPECT_EQ(std::set<DateFormatter*>(seen.begin(), seen.end()).size(), 1U);
}

TEST_F(SharedDateFormatter, BeginsWithNothingSet) {
  EXPECT_EQ(formatter.dateFormat(), "");
  EXPECT_EQ(formatter.stringFromDate(kMondayMorning), "");
}

TEST_F(SharedDateFormatter, KeepsThePatternThatWasSet) {
  formatter.setDateFormat("yyyy-MM-dd");
  EXPECT_EQ(formatter.dateFormat(), "yyyy-MM-dd");
  EXPECT_EQ(ChatsumUtils::dateFormatter().stringFromDate(kMondayMorning), "2020-01-06");
  EXPECT_EQ(formatter.stringFromDate(Date{0}), "1970-01-01");
}

TEST_F(SharedDateFormatter, ReplacesAPatternByStylesAndStylesByAPattern) {
  formatter.setDateFormat("yyyy");
  formatter.setStyles(DateStyle::kMedium, DateStyle::kShort, false);
  EXPECT_EQ(formatter.dateFormat(), "");
  EXPECT_EQ(formatter.stringFromDate(kMondayMorning), "Jan 6, 2020, 10:40 AM");
  formatter.setDateFormat("yyyy");
  EXPECT_EQ(formatter.stringFromDate(kMondayMorning), "2020");
}

TEST_F(SharedDateFormatter, GivesAReportItsOwnTextsAndKeepsThePattern) {
  const auto day = formatter.useDateFormat("dd");
  const auto month = formatter.useDateFormat("/MM");
  TextBuffer text;
  day->append(kMondayMorning, text);
  month->append(kMondayMorning, text);
  EXPECT_EQ(text.view(), "06/01");
  EXPECT_EQ(formatter.dateFormat(), "/MM");
}

}  // namespace
}  // namespace chatsum::test
