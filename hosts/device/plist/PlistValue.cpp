#include "hosts/device/plist/PlistValue.h"

#include <cmath>

namespace chatsum::device {

const std::string* PlistValue::asData() const {
  const auto* data = std::get_if<Data>(&value_);
  return data ? &data->bytes : nullptr;
}

std::optional<std::int64_t> PlistValue::asInteger() const {
  if (const auto* integer = std::get_if<std::int64_t>(&value_)) return *integer;
  if (const auto* flag = std::get_if<bool>(&value_)) return *flag ? 1 : 0;
  constexpr double kMostExact = 9007199254740992.0;  // 2^53
  const auto* real = std::get_if<double>(&value_);
  if (!real || !(std::abs(*real) <= kMostExact) || std::trunc(*real) != *real) return std::nullopt;
  return static_cast<std::int64_t>(*real);
}

std::optional<double> PlistValue::asReal() const {
  if (const auto* real = std::get_if<double>(&value_)) return *real;
  if (const auto integer = asInteger()) return static_cast<double>(*integer);
  return std::nullopt;
}

std::optional<bool> PlistValue::asBool() const {
  if (const auto* flag = std::get_if<bool>(&value_)) return *flag;
  if (const auto integer = asInteger()) return *integer != 0;
  return std::nullopt;
}

std::optional<Date> PlistValue::asDate() const {
  const auto* date = std::get_if<Date>(&value_);
  return date ? std::optional<Date>(*date) : std::nullopt;
}

const PlistValue& PlistValue::operator[](std::string_view key) const {
  static const PlistValue kNone;
  const Entries* entries = asDictionary();
  if (!entries) return kNone;
  for (const Entry& entry : *entries) {
    if (entry.key == key) return entry.value;
  }
  return kNone;
}

std::string PlistValue::stringAt(std::string_view key) const {
  const std::string* text = (*this)[key].asString();
  return text ? *text : std::string();
}

}  // namespace chatsum::device
