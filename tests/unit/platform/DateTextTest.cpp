#include <gtest/gtest.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "platform/system/dates/SystemClock.h"
#include "platform/system/dates/SystemDateFormatting.h"

namespace chatsum::platform::system {
namespace {

constexpr const char* kReportPattern = "EEE, MM-dd-YYYY hh:mm aa";

constexpr const char* kZones[] = {"UTC",
                                  "Europe/Berlin",
                                  "America/New_York",
                                  "Asia/Kathmandu",
                                  "Australia/Lord_Howe",
                                  "America/St_Johns",
                                  "Africa/Monrovia",
                                  "Pacific/Apia",
                                  "Pacific/Kiritimati",
                                  "Asia/Tehran",
                                  "Africa/Casablanca",
                                  "America/Sao_Paulo",
                                  "Europe/Dublin",
                                  "Asia/Kolkata",
                                  "Pacific/Chatham",
                                  "Africa/Cairo",
                                  "Antarctica/Troll",
                                  "Asia/Pyongyang",
                                  "America/Caracas",
                                  "Europe/Amsterdam"};

constexpr const char* kLocales[] = {"en_US", "en_GB", "de_DE", "fr_FR", "ja_JP", "ar_EG", "hi_IN", "th_TH", "fa_IR"};

constexpr const char* kPatterns[] = {kReportPattern,          "HH:mm:ss",
                                     "yyyy-MM-dd'T'HH:mm:ss", "h 'o''clock' a, EEEE d. MMMM y G",
                                     "k:m K:s aaaa",          "''yy D w W e c Q qqqq F",
                                     "mm''ss'mm' MMM"};

/// What ICU itself writes, thin spaces made plain.
class Reference {
 public:
  Reference(const std::string& pattern, const std::string& locale, const std::string& zone) {
    UErrorCode status = U_ZERO_ERROR;
    format_ = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString::fromUTF8(pattern),
                                                      icu::Locale(locale.c_str()), status);
    format_->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone)));
  }
  std::string operator()(double seconds) const {
    icu::UnicodeString text;
    format_->format(seconds * 1000, text);
    text.findAndReplace(icu::UnicodeString(char16_t{0x202F}), icu::UnicodeString(u' '));
    std::string result;
    return text.toUTF8String(result);
  }

 private:
  std::unique_ptr<icu::SimpleDateFormat> format_;
};

std::string textOf(DateText& text, double seconds) {
  TextBuffer buffer;
  text.append(Date{seconds}, buffer);
  return std::string(buffer.view());
}

class DateTexts : public ::testing::Test {
 protected:
  std::unique_ptr<DateText> make(const std::string& pattern, const std::string& locale, const std::string& zone) {
    return SystemDateFormatting(clock_, {locale, zone}).withPattern(pattern);
  }
  void expectEqual(const std::string& pattern, const std::string& locale, const std::string& zone,
                   const std::vector<double>& instants) {
    const Reference reference(pattern, locale, zone);
    const auto text = make(pattern, locale, zone);
    for (const double instant : instants) {
      ASSERT_EQ(textOf(*text, instant), reference(instant))
          << pattern << " " << locale << " " << zone << " at " << std::fixed << instant;
    }
  }
  SystemClock clock_;
};

/// Seconds of 1 January of years 1901 to 2040, roughly.
constexpr double kYear1901 = -2177452800;
constexpr double kYear2041 = 2240611200;

/// Instants at which the offset of the zone changes, 1901 to 2040.
std::vector<double> offsetChanges(const std::string& name) {
  const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
  const auto offset = [&](double seconds) {
    std::int32_t raw = 0;
    std::int32_t summer = 0;
    UErrorCode status = U_ZERO_ERROR;
    zone->getOffset(seconds * 1000, false, raw, summer, status);
    return raw + summer;
  };
  std::vector<double> changes;
  constexpr double kStep = 86400.0 * 5;
  for (double at = kYear1901; at < kYear2041; at += kStep) {
    if (offset(at) == offset(at + kStep)) continue;
    double before = at;
    double after = at + kStep;
    while (after - before > 1) {
      const double middle = std::floor((before + after) / 2);
      (offset(middle) == offset(before) ? before : after) = middle;
    }
    changes.push_back(after);
  }
  return changes;
}

TEST_F(DateTexts, EqualIcuAtRandomInstantsInEveryZone) {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> instants(kYear1901, kYear2041);
  for (const char* zone : kZones) {
    std::vector<double> sample;
    for (int i = 0; i < 400; ++i) {
      const double at = instants(random);
      // Neighbours on the same and the next days too, so that a kept day is used.
      for (const double step : {0.0, 1.0, 59.5, 3600.0, 43200.0, 86400.0}) sample.push_back(at + step);
    }
    expectEqual(kReportPattern, "en_US", zone, sample);
    expectEqual("yyyy-MM-dd HH:mm:ss", "de_DE", zone, sample);
  }
}

TEST_F(DateTexts, EqualIcuSecondBySecondAroundEveryChangeOfTheClocks) {
  for (const char* zone : kZones) {
    const auto changes = offsetChanges(zone);
    for (const double change : changes) {
      std::vector<double> sample;
      for (int second = -90; second <= 90; ++second) sample.push_back(change + second);
      for (int minute = -26 * 60; minute <= 26 * 60; minute += 13) sample.push_back(change + minute * 60 + 59);
      expectEqual("EEE, MM-dd-YYYY HH:mm:ss", "en_US", zone, sample);
    }
  }
}

TEST_F(DateTexts, FindTheChangesOfTheClocksThatTheTestsRelyOn) {
  EXPECT_GT(offsetChanges("Europe/Berlin").size(), 80u);
  EXPECT_GT(offsetChanges("Australia/Lord_Howe").size(), 40u);
  EXPECT_GE(offsetChanges("Africa/Monrovia").size(), 2u);
  EXPECT_GE(offsetChanges("Pacific/Apia").size(), 3u);
}

TEST_F(DateTexts, EqualIcuInEveryLocaleAndPattern) {
  std::mt19937_64 random(2);
  std::uniform_real_distribution<double> instants(kYear1901, kYear2041);
  std::vector<double> sample;
  for (int i = 0; i < 40; ++i) {
    const double day = std::floor(instants(random) / 86400) * 86400;
    for (int hour = 0; hour < 24; ++hour) sample.push_back(day + hour * 3600 + hour * 61 + i);
  }
  for (const char* locale : kLocales) {
    for (const char* pattern : kPatterns) {
      for (const char* zone : {"UTC", "Asia/Kathmandu", "America/New_York"}) expectEqual(pattern, locale, zone, sample);
    }
  }
}

TEST_F(DateTexts, EqualIcuForPatternsWhosePartsAreNotKept) {
  std::vector<double> sample;
  for (int i = 0; i < 200; ++i) sample.push_back(1600000000 + i * 4321.123);
  for (const char* pattern : {"HH:mm:ss.SSS", "h:mm B", "h b", "A", "HH:mm zzzz", "HH:mm xxx VV", "O HH"}) {
    expectEqual(pattern, "en_US", "Europe/Berlin", sample);
  }
}

TEST_F(DateTexts, EqualIcuAroundMidnightAndForFractionsOfSeconds) {
  std::vector<double> sample;
  for (const double midnight : {0.0, -86400.0, 1577836800.0, 951782400.0, -12219292800.0, -62135596800.0}) {
    for (const double step : {-1.0, -0.5, -0.001, 0.0, 0.001, 0.4999, 0.9999, 1.0, 59.9999})
      sample.push_back(midnight + step);
  }
  for (const char* zone : {"UTC", "Africa/Monrovia", "Asia/Kathmandu"}) {
    expectEqual("yyyy-MM-dd HH:mm:ss", "en_US", zone, sample);
  }
}

TEST_F(DateTexts, KeepTheWeekYearOfTheLocale) {
  const double newYear = 1609502400;  // 2021-01-01T12:00:00Z, a Friday
  EXPECT_EQ(textOf(*make(kReportPattern, "en_US", "UTC"), newYear), "Fri, 01-01-2021 12:00 PM");
  EXPECT_EQ(textOf(*make("dd.MM.YYYY", "de_DE", "UTC"), newYear), "01.01.2020");
}

TEST_F(DateTexts, SkipTheDayThatSamoaSkipped) {
  const auto text = make("yyyy-MM-dd HH:mm:ss", "en_US", "Pacific/Apia");
  EXPECT_EQ(textOf(*text, 1325239199), "2011-12-29 23:59:59");
  EXPECT_EQ(textOf(*text, 1325239200), "2011-12-31 00:00:00");
}

TEST_F(DateTexts, SurviveDatesThatAreAbsurd) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const char* zone : kZones) {
    for (const char* locale : kLocales) {
      const auto text = make(kReportPattern, locale, zone);
      const std::string last = textOf(*text, kInfinity);
      const std::string first = textOf(*text, -kInfinity);
      EXPECT_FALSE(last.empty());
      EXPECT_FALSE(first.empty());
      for (const double absurd : {9e18, 1e300, std::numeric_limits<double>::max()}) {
        EXPECT_EQ(textOf(*text, absurd), last);
        EXPECT_EQ(textOf(*text, -absurd), first);
      }
      EXPECT_EQ(textOf(*text, std::numeric_limits<double>::quiet_NaN()), "");
      for (const double far : {1e11, -1e11, 9.9e10, 1.1e11, 1e13, -1e14}) EXPECT_FALSE(textOf(*text, far).empty());
    }
  }
}

TEST_F(DateTexts, OfAnImpossiblePatternAreEmpty) {
  EXPECT_EQ(textOf(*make("yyyy J", "en_US", "UTC"), 0), "");
  EXPECT_EQ(textOf(*make("", "en_US", "UTC"), 0), "");
}

TEST_F(DateTexts, MayBeLongInTheirFixedParts) {
  const std::string words(500, 'x');
  EXPECT_EQ(textOf(*make("'" + words + "'HH'" + words + "'", "en_US", "UTC"), 3600), words + "01" + words);
}

}  // namespace
}  // namespace chatsum::platform::system
