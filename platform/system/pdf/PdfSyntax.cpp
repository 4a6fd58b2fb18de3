#include "platform/system/pdf/PdfSyntax.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>

#include "platform/foundation/Utf8.h"

namespace chatsum::platform::system::pdf {
namespace {

/// Readers of PDF files hold coordinates as floats, beyond this they get coarse.
constexpr double kFarthest = 1e6;

/// A number of `scale`ths without the zeros at its end.
void appendFraction(std::string& to, std::int64_t value, std::int64_t scale) {
  if (value < 0) {
    to += '-';
    value = -value;
  }
  if (value >= scale) appendInteger(to, value / scale);
  std::int64_t rest = value % scale;
  if (rest == 0) {
    if (value == 0) to += '0';
    return;
  }
  to += '.';
  for (; rest != 0; rest %= scale) {
    scale /= 10;
    to += static_cast<char>('0' + rest / scale);
  }
}

}  // namespace

std::int64_t hundredths(double value) {
  if (std::isnan(value)) return 0;
  return std::llround(std::clamp(value, -kFarthest, kFarthest) * 100);
}

void appendInteger(std::string& to, std::int64_t value) {
  char digits[24];
  to.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void appendHundredths(std::string& to, std::int64_t value) { appendFraction(to, value, 100); }

void appendShare(std::string& to, double value) {
  const double share = std::isnan(value) ? 0 : std::clamp(value, 0.0, 1.0);
  appendFraction(to, std::llround(share * 1000), 1000);
}

std::string reference(int object) { return std::to_string(object) + " 0 R"; }

void appendLiteral(std::string& to, std::string_view bytes) {
  for (const char c : bytes) {
    if (c == '\r') {
      to += "\\r";  // as it is, it would be read as a newline
      continue;
    }
    if (c == '(' || c == ')' || c == '\\') to += '\\';
    to += c;
  }
}

std::string utf16(std::string_view utf8) {
  std::string units;
  const auto append = [&units](std::uint32_t unit) {
    units += static_cast<char>(unit >> 8);
    units += static_cast<char>(unit & 0xFF);
  };
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t c = utf8::next(utf8, at);
    if (c < 0x10000) {
      append(c);
    } else {
      append(0xD800 + ((c - 0x10000) >> 10));
      append(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
  }
  return units;
}

void appendHex(std::string& to, std::string_view bytes) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    to += kDigits[byte >> 4];
    to += kDigits[byte & 0xF];
  }
}

std::string textString(std::string_view utf8) {
  std::string made = "(\xFE\xFF";
  appendLiteral(made, utf16(utf8));
  return made + ")";
}

std::string dateString(Date date) {
  constexpr double kFirst = -62'167'219'200, kLast = 253'402'300'799;  // of the years 0 to 9999
  const double seconds = std::isnan(date.secondsSince1970) ? 0 : std::clamp(date.secondsSince1970, kFirst, kLast);
  const std::chrono::sys_seconds time{std::chrono::seconds(static_cast<std::int64_t>(std::floor(seconds)))};
  const auto midnight = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day day(midnight);
  const std::chrono::hh_mm_ss clock(time - midnight);
  std::string made = "(D:";
  const auto append = [&made](std::int64_t number, std::size_t digits) {
    const std::string text = std::to_string(number);
    if (text.size() < digits) made.append(digits - text.size(), '0');
    made += text;
  };
  append(static_cast<int>(day.year()), 4);
  append(static_cast<unsigned>(day.month()), 2);
  append(static_cast<unsigned>(day.day()), 2);
  append(clock.hours().count(), 2);
  append(clock.minutes().count(), 2);
  append(clock.seconds().count(), 2);
  return made + "Z)";
}

}  // namespace chatsum::platform::system::pdf
