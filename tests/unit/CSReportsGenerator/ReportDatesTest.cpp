#include <algorithm>
#include <limits>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "tests/unit/CSReportsGenerator/ReportEngineTest.h"

namespace chatsum::test {
namespace {

// Moments around New Year, in UTC.
constexpr double kSunday2018Dec30 = 1546128000;
constexpr double kMonday2018Dec31 = 1546214400;
constexpr double kThursday2020Dec31 = 1609372800;
constexpr double kFriday2021Jan1 = 1609459200;

class ReportDates : public ReportEngineTest {
 protected:
  void SetUp() override {
    makeFolder();
    // The formatter of the process may still hold the locale of another test.
    ChatsumUtils::dateFormatter().setDateFormat("");
  }

  /// The date as the text report prints it.
  std::string text(const Value& date) {
    const std::string path = inFolder("dates.txt");
    const Value format = Record{{"%@", "Date"}};
    if (engine.generateTextReport(path, format, Value(), Array{Record{{"Date", date}}})) return "not written";
    return fake.read(path);
  }
};

TEST_F(ReportDates, PrintTheYearOfTheWeekInAmericanEnglish) {
  fake.dateFormatting.use("en_US", "UTC");
  EXPECT_EQ(text(Date{kSunday2018Dec30}), "Sun, 12-30-2019 12:00 AM\n");
  EXPECT_EQ(text(Date{kMonday2018Dec31}), "Mon, 12-31-2019 12:00 AM\n");
  EXPECT_EQ(text(Date{kThursday2020Dec31}), "Thu, 12-31-2021 12:00 AM\n");
  EXPECT_EQ(text(Date{kFriday2021Jan1}), "Fri, 01-01-2021 12:00 AM\n");
}

TEST_F(ReportDates, PrintTheYearOfTheWeekInBritishEnglish) {
  fake.dateFormatting.use("en_GB", "UTC");
  EXPECT_EQ(text(Date{kSunday2018Dec30}), "Sun, 12-30-2018 12:00 am\n");
  EXPECT_EQ(text(Date{kMonday2018Dec31}), "Mon, 12-31-2019 12:00 am\n");
  EXPECT_EQ(text(Date{kThursday2020Dec31}), "Thu, 12-31-2020 12:00 am\n");
  EXPECT_EQ(text(Date{kFriday2021Jan1}), "Fri, 01-01-2020 12:00 am\n");
}

TEST_F(ReportDates, PrintTheYearOfTheWeekInGerman) {
  fake.dateFormatting.use("de_DE", "UTC");
  EXPECT_EQ(text(Date{kMonday2018Dec31}), "Mo., 12-31-2019 12:00 AM\n");
  EXPECT_EQ(text(Date{kFriday2021Jan1}), "Fr., 01-01-2020 12:00 AM\n");
}

TEST_F(ReportDates, AreToldInTheUsersZone) {
  fake.dateFormatting.use("en_US", "America/New_York");
  EXPECT_EQ(text(0), "Wed, 12-31-1970 07:00 PM\n");  // still 1969, but its week is the first of 1970
  EXPECT_EQ(text(Date{1593604800}), "Wed, 07-01-2020 08:00 AM\n");
}

TEST_F(ReportDates, FollowTheChangeToSummerTime) {
  fake.dateFormatting.use("en_US", "Europe/Berlin");
  EXPECT_EQ(text(Date{1585443540}), "Sun, 03-29-2020 01:59 AM\n");
  EXPECT_EQ(text(Date{1585443600}), "Sun, 03-29-2020 03:00 AM\n");
}

TEST_F(ReportDates, PrintNoonAndMidnightAsTwelve) {
  EXPECT_EQ(text(Date{1578312000}), "Mon, 01-06-2020 12:00 PM\n");
  EXPECT_EQ(text(Date{1578268799}), "Sun, 01-05-2020 11:59 PM\n");
  EXPECT_EQ(text(Date{1578268800}), "Mon, 01-06-2020 12:00 AM\n");
}

TEST_F(ReportDates, OfEndlessNumbersStillGiveOneLine) {
  for (const Value& date :
       {Value(std::numeric_limits<std::int64_t>::max()), Value(1e300), Value(-1e300), Value("99999999999999999999")}) {
    const std::string line = text(date);
    EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1) << line;
    EXPECT_NE(line, "not written");
  }
}

TEST_F(ReportDates, AreIndependentOfTheFormatThatWasUsedBefore) {
  const Array records{Record{{"Date", Date{1578307200}}}};
  generate({{"FILE_NAME", "a"}, {"FILE_FORMAT", 0}, {"REPORT_FORMAT", Record{{"%@", "Date"}}}, {"RECORDS", records}});
  EXPECT_EQ(text(Date{1578307200}), "Mon, 01-06-2020 10:40 AM\n");
  generate({{"FILE_NAME", "b"}, {"FILE_FORMAT", 0}, {"REPORT_FORMAT", Record{{"%@", "Date"}}}, {"RECORDS", records}});
  EXPECT_EQ(fake.read(inFolder("a.csv")), fake.read(inFolder("b.csv")));
}

}  // namespace
}  // namespace chatsum::test
