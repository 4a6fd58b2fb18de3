// A point in time.
#pragma once

#include <compare>

namespace chatsum {

/// Seconds since 1970-01-01T00:00:00Z, fractions kept.
struct Date {
  double secondsSince1970 = 0;

  friend bool operator==(const Date&, const Date&) = default;
  friend std::partial_ordering operator<=>(const Date&, const Date&) = default;
};

/// Seconds from 1970-01-01T00:00:00Z to 2001-01-01T00:00:00Z, the platform's own reference date.
inline constexpr long long kSecondsFrom1970To2001 = 978307200;

}  // namespace chatsum
