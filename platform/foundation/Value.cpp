#include "platform/foundation/Value.h"

#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <new>

#include "platform/foundation/Description.h"

namespace chatsum {
namespace {

std::int64_t saturated(double number) {
  if (std::isnan(number)) return 0;
  if (number >= 9223372036854775807.0) return std::numeric_limits<std::int64_t>::max();
  if (number <= -9223372036854775808.0) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(number);
}

std::string_view withoutLeadingBlanks(std::string_view text) {
  const auto start = text.find_first_not_of(" \t\n\r\v\f");
  return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

std::int64_t leadingInteger(std::string_view text) {
  text = withoutLeadingBlanks(text);
  bool negative = false;
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
    negative = text[0] == '-';
    text.remove_prefix(1);
  }
  std::uint64_t result = 0;
  const std::uint64_t limit = std::uint64_t{1} << 63;
  for (const char c : text) {
    if (c < '0' || c > '9') break;
    const auto digit = static_cast<std::uint64_t>(c - '0');
    result = result > (limit - digit) / 10 ? limit : result * 10 + digit;
    if (result >= limit) {
      return negative ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
    }
  }
  return negative ? -static_cast<std::int64_t>(result) : static_cast<std::int64_t>(result);
}

bool leadingBool(std::string_view text) {
  text = withoutLeadingBlanks(text);
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) text.remove_prefix(1);
  while (!text.empty() && text[0] == '0') text.remove_prefix(1);
  if (text.empty()) return false;
  const char c = text[0];
  return c == 'Y' || c == 'y' || c == 'T' || c == 't' || (c >= '1' && c <= '9');
}

/// Unsigned numbers in the order of the doubles they come from.
std::uint64_t orderedBits(double number) {
  if (number == 0) number = 0;  // -0 and 0 are one number
  const auto bits = std::bit_cast<std::uint64_t>(number);
  const std::uint64_t sign = std::uint64_t{1} << 63;
  return bits & sign ? ~bits : bits | sign;
}

}  // namespace

std::int64_t Value::integerValue() const {
  switch (kind_) {
    case Kind::kBool: return bool_ ? 1 : 0;
    case Kind::kInteger: return integer_;
    case Kind::kReal: return saturated(real_);
    case Kind::kString: return leadingInteger(string_.view());
    default: return 0;
  }
}

double Value::doubleValue() const {
  switch (kind_) {
    case Kind::kBool: return bool_ ? 1 : 0;
    case Kind::kInteger: return static_cast<double>(integer_);
    case Kind::kReal: return real_;
    case Kind::kString: return description::leadingDouble(string_.view());
    default: return 0;
  }
}

bool Value::boolValue() const {
  switch (kind_) {
    case Kind::kBool: return bool_;
    case Kind::kInteger: return integer_ != 0;
    case Kind::kReal: return real_ != 0;
    case Kind::kString: return leadingBool(string_.view());
    default: return false;
  }
}

std::string Value::description() const { return description::of(*this); }

std::uint64_t Value::reference() const {
  const auto address = [](const void* pointer) { return static_cast<std::uint64_t>(std::bit_cast<std::uintptr_t>(pointer)); };
  switch (kind_) {
    case Kind::kNone: return 0;
    case Kind::kBool: return bool_ ? 1 : 0;
    case Kind::kInteger: return static_cast<std::uint64_t>(integer_) ^ (std::uint64_t{1} << 63);
    case Kind::kReal: return orderedBits(real_);
    case Kind::kDate: return orderedBits(date_.secondsSince1970);
    case Kind::kString: return address(string_.identity());
    case Kind::kArray: return address(array_.identity());
    case Kind::kRecord: return address(record_.identity());
    case Kind::kObject: return address(object_.get());
  }
  return 0;
}

bool Value::operator==(const Value& other) const {
  if (kind_ != other.kind_) {
    const auto isNumber = [](Kind kind) { return kind == Kind::kInteger || kind == Kind::kReal; };
    return isNumber(kind_) && isNumber(other.kind_) && doubleValue() == other.doubleValue();
  }
  switch (kind_) {
    case Kind::kNone: return true;
    case Kind::kBool: return bool_ == other.bool_;
    case Kind::kInteger: return integer_ == other.integer_;
    case Kind::kReal: return real_ == other.real_;
    case Kind::kDate: return date_ == other.date_;
    case Kind::kString: return string_ == other.string_;
    case Kind::kArray: return array_ == other.array_;
    case Kind::kRecord: return record_ == other.record_;
    case Kind::kObject: return object_ == other.object_;
  }
  return false;
}

void Value::copyFrom(const Value& other) {
  kind_ = other.kind_;
  switch (kind_) {
    case Kind::kNone: integer_ = 0; break;
    case Kind::kBool: bool_ = other.bool_; break;
    case Kind::kInteger: integer_ = other.integer_; break;
    case Kind::kReal: real_ = other.real_; break;
    case Kind::kDate: date_ = other.date_; break;
    case Kind::kString: new (&string_) String(other.string_); break;
    case Kind::kArray: new (&array_) Array(other.array_); break;
    case Kind::kRecord: new (&record_) Record(other.record_); break;
    case Kind::kObject: new (&object_) Ref<Object>(other.object_); break;
  }
}

void Value::destroy() {
  switch (kind_) {
    case Kind::kString: string_.~String(); break;
    case Kind::kArray: array_.~Array(); break;
    case Kind::kRecord: record_.~Record(); break;
    case Kind::kObject: object_.~Ref(); break;
    default: break;
  }
}

}  // namespace chatsum
