// The text that "%@" prints for a value, and the numbers that stand at the start of a text.
#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/Value.h"

namespace chatsum::description {

/// A string by itself, "(null)" for nothing, 1 or 0 for a boolean, the shortest decimal text that reads back as the
/// same number (an exponent only below 1e-4 and from 1e16), a date as "2020-01-06 10:40:00 +0000" in UTC, arrays and
/// dictionaries in the old property-list style (dictionary keys in ascending order; whatever stands in them is quoted
/// unless it is letters and digits only).
[[nodiscard]] std::string of(const Value& value);

/// A number in plain decimal: no exponent, no thousands separators, as many fractional digits as tell it apart.
[[nodiscard]] std::string plainDecimal(double number);

/// The decimal number at the start of a text, after blanks and a sign; 0 when there is none, an infinity when it is too
/// large.
[[nodiscard]] double leadingDouble(std::string_view text);

}  // namespace chatsum::description
