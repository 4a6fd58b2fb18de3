#include "hosts/device/report/TimeRange.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace chatsum::device {
namespace {

struct CivilTime {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  double fraction = 0;
  bool hasClock = false;
  std::optional<int> offset;  // seconds east of UTC
};

/// Takes fixed numbers of digits and single characters off the front of a text.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  [[nodiscard]] bool atEnd() const { return text_.empty(); }
  bool character(char wanted) {
    if (text_.empty() || text_.front() != wanted) return false;
    text_.remove_prefix(1);
    return true;
  }
  bool digits(std::size_t count, int& number) {
    if (text_.size() < count) return false;
    number = 0;
    for (std::size_t i = 0; i < count; ++i) {
      if (text_[i] < '0' || text_[i] > '9') return false;
      number = number * 10 + (text_[i] - '0');
    }
    text_.remove_prefix(count);
    return true;
  }
  bool fraction(double& number) {
    double place = 1;
    std::size_t count = 0;
    for (; count < text_.size() && text_[count] >= '0' && text_[count] <= '9'; ++count) {
      place /= 10;
      number += place * (text_[count] - '0');
    }
    text_.remove_prefix(count);
    return count > 0;
  }

 private:
  std::string_view text_;
};

bool scanZone(Scanner& scanner, CivilTime& time) {
  if (scanner.character('Z') || scanner.character('z')) {
    time.offset = 0;
    return scanner.atEnd();
  }
  constexpr int kMostHours = 18, kMinutes = 60, kSeconds = 60;
  const bool isEast = scanner.character('+');
  if (!isEast && !scanner.character('-')) return false;
  int hours = 0, minutes = 0;
  if (!scanner.digits(2, hours)) return false;
  if (!scanner.atEnd()) {
    scanner.character(':');
    if (!scanner.digits(2, minutes) || !scanner.atEnd()) return false;
  }
  if (hours > kMostHours || minutes >= kMinutes) return false;
  time.offset = (isEast ? 1 : -1) * (hours * kMinutes + minutes) * kSeconds;
  return true;
}

bool isCivil(const CivilTime& time) {
  constexpr int kDaysOfMonth[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (time.year < 1 || time.month < 1 || time.month > 12 || time.day < 1) return false;
  const bool isLeapYear = (time.year % 4 == 0 && time.year % 100 != 0) || time.year % 400 == 0;
  const int days = kDaysOfMonth[time.month - 1] + (time.month == 2 && isLeapYear ? 1 : 0);
  return time.day <= days && time.hour <= 23 && time.minute <= 59 && time.second <= 59;
}

std::optional<CivilTime> scan(std::string_view text) {
  CivilTime time;
  Scanner scanner(text);
  if (!scanner.digits(4, time.year) || !scanner.character('-') || !scanner.digits(2, time.month) ||
      !scanner.character('-') || !scanner.digits(2, time.day)) {
    return std::nullopt;
  }
  if (scanner.atEnd()) return isCivil(time) ? std::optional(time) : std::nullopt;
  if (!scanner.character('T') && !scanner.character('t') && !scanner.character(' ')) return std::nullopt;
  time.hasClock = true;
  if (!scanner.digits(2, time.hour) || !scanner.character(':') || !scanner.digits(2, time.minute)) return std::nullopt;
  if (scanner.character(':')) {
    if (!scanner.digits(2, time.second)) return std::nullopt;
    if (scanner.character('.') && !scanner.fraction(time.fraction)) return std::nullopt;
  }
  if (!scanner.atEnd() && !scanZone(scanner, time)) return std::nullopt;
  return isCivil(time) ? std::optional(time) : std::nullopt;
}

Date instantOf(const CivilTime& time) {
  std::tm fields{};
  fields.tm_year = time.year - 1900;
  fields.tm_mon = time.month - 1;
  fields.tm_mday = time.day;
  fields.tm_hour = time.hour;
  fields.tm_min = time.minute;
  fields.tm_sec = time.second;
  fields.tm_isdst = -1;
  const std::time_t seconds = time.offset ? ::timegm(&fields) - *time.offset : std::mktime(&fields);
  return Date{static_cast<double>(seconds) + time.fraction};
}

}  // namespace

std::optional<Date> parseTime(std::string_view text) {
  const auto time = scan(text);
  return time ? std::optional(instantOf(*time)) : std::nullopt;
}

bool setSince(TimeRange& range, std::string_view text) {
  const auto time = scan(text);
  if (time) range.since = instantOf(*time);
  return time.has_value();
}

bool setUntil(TimeRange& range, std::string_view text) {
  auto time = scan(text);
  if (!time) return false;
  range.until = range.before = std::nullopt;
  if (time->hasClock) {
    range.until = instantOf(*time);
  } else {
    ++time->day;  // the calendar carries over; a day may have 23 or 25 hours
    range.before = instantOf(*time);
  }
  return true;
}

std::string isoTime(Date date) {
  const auto seconds = static_cast<std::time_t>(std::floor(date.secondsSince1970));
  std::tm fields{};
  if (!::localtime_r(&seconds, &fields)) return "";
  const long offset = fields.tm_gmtoff / 60;
  char text[64];
  std::snprintf(text, sizeof text, "%04lld-%02d-%02dT%02d:%02d:%02d%c%02ld:%02ld",
                static_cast<long long>(fields.tm_year) + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
                fields.tm_min, fields.tm_sec, offset < 0 ? '-' : '+', std::labs(offset) / 60, std::labs(offset) % 60);
  return text;
}

}  // namespace chatsum::device
