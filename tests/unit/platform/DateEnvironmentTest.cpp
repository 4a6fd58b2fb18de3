#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/fake/FakeServices.h"
#include "platform/system/dates/SystemDateFormatting.h"

namespace chatsum::platform::system {
namespace {

std::string textOf(DateText& text, double seconds) {
  TextBuffer buffer;
  text.append(Date{seconds}, buffer);
  return std::string(buffer.view());
}

constexpr double kWinter = 1578307200;  // 2020-01-06T10:40:00Z, a Monday
constexpr double kSummer = 1593600000;  // 2020-07-01T10:40:00Z

class DateEnvironment : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"TZ", "LC_ALL", "LC_TIME", "LANG"}) unsetenv(name);
  }
  /// Winter and summer, in the environment's locale and zone.
  std::string hours(const std::string& zone) {
    setenv("TZ", zone.c_str(), 1);
    const SystemDateFormatting formatting(clock_);
    const auto text = formatting.withPattern("HH:mm:ss");
    return textOf(*text, kWinter) + " " + textOf(*text, kSummer);
  }
  std::string day() const { return textOf(*SystemDateFormatting(clock_).withPattern("EEEE"), kWinter); }

  fake::FakeClock clock_;
};

TEST_F(DateEnvironment, ZoneIsTheOneOfTz) {
  EXPECT_EQ(hours("Europe/Berlin"), "11:40:00 12:40:00");
  EXPECT_EQ(hours(":America/New_York"), "05:40:00 06:40:00");
  EXPECT_EQ(hours("/usr/share/zoneinfo/Asia/Kathmandu"), "16:25:00 16:25:00");
  EXPECT_EQ(hours("posix/Europe/Berlin"), "11:40:00 12:40:00");
  EXPECT_EQ(hours("UTC"), "10:40:00 10:40:00");
  EXPECT_EQ(hours("EST5EDT"), "05:40:00 06:40:00");
}

TEST_F(DateEnvironment, ZoneMayBeARuleOfPosix) {
  EXPECT_EQ(hours("UTC0"), "10:40:00 10:40:00");
  EXPECT_EQ(hours("CET-1CEST,M3.5.0,M10.5.0/3"), "11:40:00 12:40:00");
  EXPECT_EQ(hours("<+0545>-5:45"), "16:25:00 16:25:00");
  EXPECT_EQ(hours("<-03>3"), "07:40:00 07:40:00");
  EXPECT_EQ(hours("GMT+3"), "07:40:00 07:40:00");
  EXPECT_EQ(hours("XYZ-1:02:03"), "11:42:03 11:42:03");
  EXPECT_EQ(hours("ABC5DEF"), "05:40:00 06:40:00");
  EXPECT_EQ(hours("AEST-10AEDT,M10.1.0,M4.1.0/3"), "21:40:00 20:40:00");
  EXPECT_EQ(hours("IST-1GMT0,M10.5.0,M3.5.0/1"), "10:40:00 11:40:00");
  EXPECT_EQ(hours("ABC0DEF,J60,J300"), "10:40:00 11:40:00");
}

TEST_F(DateEnvironment, ZoneOfARuleChangesWhenTheRuleSays) {
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  const auto text = SystemDateFormatting(clock_).withPattern("dd HH:mm:ss");
  EXPECT_EQ(textOf(*text, 1585443599), "29 01:59:59");
  EXPECT_EQ(textOf(*text, 1585443600), "29 03:00:00");
  EXPECT_EQ(textOf(*text, 1603587599), "25 02:59:59");
  EXPECT_EQ(textOf(*text, 1603587600), "25 02:00:00");
}

TEST_F(DateEnvironment, ZoneThatIsNoneIsUtc) {
  for (const char* odd :
       {"", "Nowhere/Atall", "X", "<", "<>", "ABC", "ABC99", "ABC5DEF,", "ABC5DEF,M1", "ABC5DEF,M13.1.0,M1.1.0",
        "ABC5DEF,J0,J1", "ABC-", "ABC5:99", "ABC5DEF4,M3.2.0,M11.1.0x", ":", "../../etc/passwd"}) {
    EXPECT_EQ(hours(odd), "10:40:00 10:40:00") << odd;
  }
}

TEST_F(DateEnvironment, ZoneWithoutTzIsSomeZone) {
  const auto text = SystemDateFormatting(clock_).withPattern("yyyy");
  EXPECT_EQ(textOf(*text, kWinter), "2020");
}

TEST_F(DateEnvironment, LocaleIsTheFirstOfItsVariablesThatSaysSomething) {
  setenv("TZ", "UTC", 1);
  EXPECT_EQ(day(), "Monday");
  setenv("LANG", "fr_FR.UTF-8", 1);
  EXPECT_EQ(day(), "lundi");
  setenv("LC_TIME", "de_DE.UTF-8@euro", 1);
  EXPECT_EQ(day(), "Montag");
  setenv("LC_ALL", "", 1);
  EXPECT_EQ(day(), "Montag");
  setenv("LC_ALL", "C.UTF-8", 1);
  EXPECT_EQ(day(), "Monday");
  setenv("LC_ALL", "POSIX", 1);
  EXPECT_EQ(day(), "Monday");
  setenv("LC_ALL", "sr_RS.UTF-8@latin", 1);
  EXPECT_EQ(day(), "ponedeljak");
  setenv("LC_ALL", "sr_RS", 1);
  EXPECT_EQ(day(), "понедељак");
  setenv("LC_ALL", "no_such_LOCALE@x=y", 1);
  EXPECT_FALSE(day().empty());
}

TEST_F(DateEnvironment, IsReadOnceForEachFormatting) {
  setenv("TZ", "UTC", 1);
  const SystemDateFormatting formatting(clock_);
  EXPECT_EQ(textOf(*formatting.withPattern("HH"), kWinter), "10");
  setenv("TZ", "Asia/Kathmandu", 1);
  EXPECT_EQ(textOf(*formatting.withPattern("HH:mm"), kWinter), "10:40");
}

TEST_F(DateEnvironment, StylesAreTheLocalesWithPlainSpaces) {
  const SystemDateFormatting american(clock_, {"en_US", "UTC"});
  EXPECT_EQ(textOf(*american.withStyles(DateStyle::kMedium, DateStyle::kShort, false), kWinter),
            "Jan 6, 2020, 10:40 AM");
  EXPECT_EQ(textOf(*american.withStyles(DateStyle::kShort, DateStyle::kNone, false), kWinter), "1/6/20");
  EXPECT_EQ(textOf(*american.withStyles(DateStyle::kNone, DateStyle::kMedium, false), kWinter), "10:40:00 AM");
  EXPECT_EQ(textOf(*american.withStyles(DateStyle::kNone, DateStyle::kNone, false), kWinter), "");
  const SystemDateFormatting german(clock_, {"de_DE", "UTC"});
  EXPECT_EQ(textOf(*german.withStyles(DateStyle::kMedium, DateStyle::kShort, false), kWinter), "06.01.2020, 10:40");
  EXPECT_EQ(textOf(*german.withStyles(DateStyle::kFull, DateStyle::kNone, false), kWinter), "Montag, 6. Januar 2020");
}

TEST_F(DateEnvironment, RelativeStylesNameTheDaysAroundTheClocksToday) {
  const SystemDateFormatting formatting(clock_, {"en_US", "America/New_York"});
  const auto text = formatting.withStyles(DateStyle::kMedium, DateStyle::kShort, true);
  const auto day = formatting.withStyles(DateStyle::kMedium, DateStyle::kNone, true);
  clock_.set(Date{kWinter});  // 05:40 on Monday
  EXPECT_EQ(textOf(*text, kWinter), "Today, 5:40 AM");
  EXPECT_EQ(textOf(*text, kWinter - 86400), "Yesterday, 5:40 AM");
  EXPECT_EQ(textOf(*text, kWinter - 6 * 3600), "Yesterday, 11:40 PM");
  EXPECT_EQ(textOf(*day, kWinter + 86400), "Tomorrow");
  EXPECT_EQ(textOf(*text, kWinter - 2 * 86400), "Jan 4, 2020, 5:40 AM");
  EXPECT_EQ(textOf(*day, 0), "Dec 31, 1969");
  clock_.advance(86400);
  EXPECT_EQ(textOf(*day, kWinter), "Yesterday");
}

TEST_F(DateEnvironment, RelativeStylesSpeakTheLocalesLanguage) {
  clock_.set(Date{kWinter});
  const SystemDateFormatting german(clock_, {"de_DE", "UTC"});
  const auto day = german.withStyles(DateStyle::kLong, DateStyle::kNone, true);
  EXPECT_EQ(textOf(*day, kWinter), "Heute");
  EXPECT_EQ(textOf(*day, kWinter - 2 * 86400), "Vorgestern");
  EXPECT_EQ(textOf(*day, kWinter + 3 * 86400), "9. Januar 2020");
  EXPECT_EQ(textOf(*german.withStyles(DateStyle::kNone, DateStyle::kShort, true), kWinter), "10:40");
}

TEST_F(DateEnvironment, RelativeStylesSurviveAbsurdDates) {
  const SystemDateFormatting formatting(clock_, {"en_US", "UTC"});
  const auto text = formatting.withStyles(DateStyle::kMedium, DateStyle::kShort, true);
  EXPECT_FALSE(textOf(*text, 1e300).empty());
  EXPECT_EQ(textOf(*text, std::nan("")), "");
  clock_.set(Date{std::nan("")});
  EXPECT_EQ(textOf(*text, kWinter), "Jan 6, 2020, 10:40 AM");
}

TEST_F(DateEnvironment, MayBeAskedByManyThreads) {
  const SystemDateFormatting formatting(clock_, {"en_US", "Europe/Berlin"});
  std::vector<std::jthread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&formatting, i] {
      for (int n = 0; n < 100; ++n) {
        const auto text =
            formatting.withPattern(n % 2 ? "HH:mm" : "yyyy" + std::string(static_cast<std::size_t>(n), ' '));
        EXPECT_FALSE(textOf(*text, kWinter + n * 86400.0 * i).empty());
      }
    });
  }
}

}  // namespace
}  // namespace chatsum::platform::system
