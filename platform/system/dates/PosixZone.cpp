#include "platform/system/dates/PosixZone.h"

#include <unicode/simpletz.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <utility>

namespace chatsum::platform::system {
namespace {

constexpr std::int32_t kSecond = 1000;
constexpr std::int32_t kDay = 86400 * kSecond;

/// When the clocks change, the way SimpleTimeZone takes it: `weekday` 0 means that `day` is a day of the month.
struct Change {
  std::int8_t month = 0;    // 0 is January
  std::int8_t day = 1;      // the nth weekday of the month, -1 the last
  std::int8_t weekday = 0;  // 1 is Sunday
  std::int32_t time = 2 * 3600 * kSecond;
};

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  [[nodiscard]] bool atEnd() const { return text_.empty(); }
  bool take(char c) {
    if (text_.empty() || text_.front() != c) return false;
    text_.remove_prefix(1);
    return true;
  }

  /// Three letters or more, or anything between angle brackets.
  bool name() {
    if (take('<')) {
      const auto end = text_.find('>');
      if (end == std::string_view::npos || end == 0) return false;
      text_.remove_prefix(end + 1);
      return true;
    }
    std::size_t length = 0;
    while (length < text_.size() && isLetter(text_[length])) ++length;
    text_.remove_prefix(length);
    return length >= 3;
  }

  std::optional<int> number(int least, int most) {
    int result = 0;
    std::size_t digits = 0;
    while (!text_.empty() && text_.front() >= '0' && text_.front() <= '9' && digits < 4) {
      result = result * 10 + (text_.front() - '0');
      text_.remove_prefix(1);
      ++digits;
    }
    if (digits == 0 || result < least || result > most) return std::nullopt;
    return result;
  }

  /// "[+-]hh[:mm[:ss]]" in milliseconds.
  std::optional<std::int32_t> time() {
    const bool negative = take('-');
    if (!negative) take('+');
    const auto hours = number(0, 167);
    if (!hours) return std::nullopt;
    std::int32_t seconds = *hours * 3600;
    for (const int unit : {60, 1}) {
      if (!take(':')) break;
      const auto part = number(0, 59);
      if (!part) return std::nullopt;
      seconds += *part * unit;
    }
    return (negative ? -seconds : seconds) * kSecond;
  }

  /// "M3.5.0/3", "J60" or "59".
  std::optional<Change> change() {
    Change result;
    if (take('M')) {
      const auto month = number(1, 12);
      if (!month || !take('.')) return std::nullopt;
      const auto week = number(1, 5);
      if (!week || !take('.')) return std::nullopt;
      const auto weekday = number(0, 6);
      if (!weekday) return std::nullopt;
      result.month = static_cast<std::int8_t>(*month - 1);
      result.day = static_cast<std::int8_t>(*week == 5 ? -1 : *week);
      result.weekday = static_cast<std::int8_t>(*weekday + 1);
    } else {
      const bool fromOne = take('J');
      const auto day = fromOne ? number(1, 365) : number(0, 365);
      if (!day) return std::nullopt;
      placeDay(result, std::min(fromOne ? *day - 1 : *day, 364));
    }
    if (take('/')) {
      const auto at = time();
      if (!at) return std::nullopt;
      result.time = std::clamp(*at, 0, kDay);
    }
    return result;
  }

 private:
  static bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

  /// `day` counts from 0 in a common year.
  static void placeDay(Change& change, int day) {
    constexpr std::array kLengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    std::size_t month = 0;
    while (day >= kLengths[month]) day -= kLengths[month++];
    change.month = static_cast<std::int8_t>(month);
    change.day = static_cast<std::int8_t>(day + 1);
  }

  std::string_view text_;
};

}  // namespace

std::unique_ptr<icu::TimeZone> zoneFromPosixRule(std::string_view rule) {
  Reader reader(rule);
  if (!reader.name()) return nullptr;
  const auto west = reader.time();
  if (!west || std::abs(*west) > kDay) return nullptr;
  const std::int32_t standard = -*west;
  const auto id = icu::UnicodeString::fromUTF8({rule.data(), static_cast<std::int32_t>(rule.size())});
  if (reader.atEnd()) return std::make_unique<icu::SimpleTimeZone>(standard, id);

  if (!reader.name()) return nullptr;
  std::int32_t summer = standard + 3600 * kSecond;
  Change start{2, 2, 1};  // second Sunday of March
  Change end{10, 1, 1};   // first Sunday of November
  bool hasDates = reader.take(',');
  if (!reader.atEnd() && !hasDates) {
    const auto summerWest = reader.time();
    if (!summerWest || std::abs(*summerWest) > kDay) return nullptr;
    summer = -*summerWest;
    hasDates = reader.take(',');
    if (!reader.atEnd() && !hasDates) return nullptr;
  }
  if (hasDates) {
    const auto first = reader.change();
    const auto second = first && reader.take(',') ? reader.change() : std::nullopt;
    if (!second || !reader.atEnd()) return nullptr;
    start = *first;
    end = *second;
  }
  if (summer == standard) return std::make_unique<icu::SimpleTimeZone>(standard, id);
  // Some countries call the winter the exception; the zone is the same with the halves of the year exchanged.
  if (summer < standard) std::swap(start, end);
  UErrorCode status = U_ZERO_ERROR;
  auto zone = std::make_unique<icu::SimpleTimeZone>(std::min(standard, summer), id, start.month, start.day,
                                                    start.weekday, start.time, end.month, end.day, end.weekday,
                                                    end.time, std::abs(summer - standard), status);
  if (U_FAILURE(status)) return nullptr;
  return zone;
}

}  // namespace chatsum::platform::system
