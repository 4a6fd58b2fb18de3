#include "hosts/device/session/CalendarYears.h"

#include <gtest/gtest.h>

#include "platform/foundation/TextBuffer.h"
#include "platform/system/dates/SystemClock.h"
#include "platform/system/dates/SystemDateFormatting.h"

namespace chatsum::device {
namespace {

class CalendarYearsTest : public ::testing::Test {
 protected:
  [[nodiscard]] static std::string text(platform::DateText& format) {
    TextBuffer text;
    format.append(Date{1'577'707'500}, text);  // 2019-12-30T12:05:00Z, in the first week of 2020
    return std::string(text.view());
  }

  platform::system::SystemClock clock_;
  platform::system::SystemDateFormatting dates_{clock_, {"en_US", "UTC"}};
  CalendarYears years_{dates_};
};

TEST_F(CalendarYearsTest, StandWhereAPatternAsksForTheYearOfTheWeek) {
  EXPECT_EQ(text(*dates_.withPattern("MM-dd-YYYY")), "12-30-2020");
  EXPECT_EQ(text(*years_.withPattern("MM-dd-YYYY")), "12-30-2019");
  EXPECT_EQ(text(*years_.withPattern("YY/yyyy")), "19/2019");
}

TEST_F(CalendarYearsTest, LeaveQuotedWordsAlone) {
  EXPECT_EQ(text(*years_.withPattern("'YY' YY 'Y''Y' ''YY")), "YY 19 Y'Y '19");
}

TEST_F(CalendarYearsTest, LeaveStylesToTheServiceBehindThem) {
  using platform::DateStyle;
  EXPECT_EQ(text(*years_.withStyles(DateStyle::kMedium, DateStyle::kShort, false)), "Dec 30, 2019, 12:05 PM");
}

}  // namespace
}  // namespace chatsum::device
