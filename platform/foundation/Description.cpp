#include "platform/foundation/Description.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <system_error>

#include "platform/foundation/Utf8.h"

namespace chatsum::description {
namespace {

constexpr int kDeepest = 64;  // a record may hold itself only through an object, but hostile nesting stays bounded

std::string dateText(Date date) {
  // The civil calendar from the day count: see "days_from_civil", Howard Hinnant's date algorithms.
  const double whole = std::floor(date.secondsSince1970);
  if (!(std::abs(whole) < 1e15)) return plainDecimal(date.secondsSince1970);
  const auto seconds = static_cast<long long>(whole);
  long long days = seconds / 86400;
  long long rest = seconds % 86400;
  if (rest < 0) {
    rest += 86400;
    --days;
  }
  const long long shifted = days + 719468;
  const long long era = (shifted >= 0 ? shifted : shifted - 146096) / 146097;
  const long long dayOfEra = shifted - era * 146097;
  const long long yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const long long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const long long monthFromMarch = (5 * dayOfYear + 2) / 153;
  const long long day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
  const long long month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  const long long year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
  std::array<char, 64> text{};
  const int length = std::snprintf(text.data(), text.size(), "%04lld-%02lld-%02lld %02lld:%02lld:%02lld +0000", year,
                                   month, day, rest / 3600, rest / 60 % 60, rest % 60);
  return {text.data(), static_cast<std::size_t>(length)};
}

/// The digits that tell the number apart, with an exponent only where the platform's numbers have one: 100000, 1e+16.
std::string shortest(double number) {
  std::array<char, 64> text{};
  const double size = std::abs(number);
  const bool plain = size == 0 || (size >= 1e-4 && size < 1e16);
  const auto result = std::to_chars(text.data(), text.data() + text.size(), number,
                                    plain ? std::chars_format::fixed : std::chars_format::scientific);
  return {text.data(), result.ptr};
}

std::string quoted(std::string_view text) {
  const auto plain = [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  if (!text.empty() && std::all_of(text.begin(), text.end(), plain)) return std::string(text);
  std::string result = "\"";
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = utf8::next(text, at);
    if (c == '"' || c == '\\') {
      result += '\\';
      result += static_cast<char>(c);
    } else if (c >= '\a' && c <= '\r') {
      result += '\\';
      result += "abtnvfr"[c - '\a'];
    } else if (c >= 0x20 && c < 0x7F) {
      result += static_cast<char>(c);
    } else {
      std::array<char, 16> escape{};
      const auto append = [&](char32_t unit) {
        std::snprintf(escape.data(), escape.size(), "\\U%04x", static_cast<unsigned>(unit));
        result += escape.data();
      };
      if (c > 0xFFFF) {
        append(0xD800 + ((c - 0x10000) >> 10));
        append(0xDC00 + ((c - 0x10000) & 0x3FF));
      } else {
        append(c);
      }
    }
  }
  return result + '"';
}

std::string describe(const Value& value, int depth);

std::string item(const Value& value, int depth) {
  if (const String* string = value.asString()) return quoted(string->view());
  if (value.isNone()) return "\"<null>\"";
  if (value.asArray() || value.asRecord()) return describe(value, depth);
  return quoted(describe(value, depth));  // "-1" and "1.5" are no plain words either
}

// An inner list or dictionary begins with its own indentation, wherever on the line it stands: "a =     {".
std::string describeArray(const Array& array, int depth) {
  const std::string indent(static_cast<std::size_t>(depth) * 4, ' ');
  std::string result = indent + "(\n";
  for (std::size_t i = 0; i < array.size(); ++i) {
    result += indent + "    " + item(array[i], depth + 1) + (i + 1 < array.size() ? ",\n" : "\n");
  }
  return result + indent + ")";
}

std::string describeRecord(const Record& record, int depth) {
  const std::string indent(static_cast<std::size_t>(depth) * 4, ' ');
  std::vector<std::pair<std::string_view, const Value*>> entries;
  for (std::size_t i = 0; i < record.size(); ++i) entries.emplace_back(record.keyAt(i), &record.valueAt(i));
  std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::string result = indent + "{\n";
  for (const auto& [key, value] : entries) {
    result += indent + "    " + quoted(key) + " = " + item(*value, depth + 1) + ";\n";
  }
  return result + indent + "}";
}

std::string describe(const Value& value, int depth) {
  if (depth > kDeepest) return "...";
  switch (value.kind()) {
    case Value::Kind::kNone: return "(null)";
    case Value::Kind::kBool: return value.boolValue() ? "1" : "0";
    case Value::Kind::kInteger: return std::to_string(value.integerValue());
    case Value::Kind::kReal: return shortest(value.doubleValue());
    case Value::Kind::kDate: return dateText(*value.asDate());
    case Value::Kind::kString: return value.asString()->str();
    case Value::Kind::kArray: return describeArray(*value.asArray(), depth);
    case Value::Kind::kRecord: return describeRecord(*value.asRecord(), depth);
    case Value::Kind::kObject: return value.asObject() ? value.asObject()->description() : "(null)";
  }
  return "(null)";
}

}  // namespace

std::string of(const Value& value) { return describe(value, 0); }

std::string plainDecimal(double number) {
  std::array<char, 512> text{};
  const auto result = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  return {text.data(), result.ptr};
}

double leadingDouble(std::string_view text) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  const auto start = text.find_first_not_of(" \t\n\r\v\f");
  if (start == std::string_view::npos) return 0;
  text.remove_prefix(start);
  const bool negative = text[0] == '-';
  if (negative || text[0] == '+') text.remove_prefix(1);
  // A second sign, or the letters of "inf" and "nan", begin no number of the platform.
  if (text.empty() || !(text[0] == '.' || isDigit(text[0]))) return 0;
  double number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec == std::errc::result_out_of_range) {
    const std::string_view digits(text.data(), static_cast<std::size_t>(result.ptr - text.data()));
    const auto exponent = digits.find_first_of("eE");
    const bool tiny = exponent == std::string_view::npos ? digits.front() == '.' || digits.front() == '0'
                                                         : exponent + 1 < digits.size() && digits[exponent + 1] == '-';
    number = tiny ? 0 : HUGE_VAL;
  }
  return negative ? -number : number;
}

}  // namespace chatsum::description
