// Dates as Messages stores keep them. No state, any thread.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/foundation/Date.h"

namespace chatsum::device {

/// The point in time of a stored number: nanoseconds since 2001-01-01T00:00:00Z when its absolute value is above 10^11,
/// else seconds. 0 is no date. One store may hold both forms.
[[nodiscard]] inline std::optional<Date> dateFromStored(std::int64_t stored) {
  constexpr std::int64_t kLargestSeconds = 100'000'000'000;
  constexpr double kNanosecondsPerSecond = 1e9;
  if (stored == 0) return std::nullopt;
  const bool isNanoseconds = stored > kLargestSeconds || stored < -kLargestSeconds;
  const double since2001 = isNanoseconds ? static_cast<double>(stored) / kNanosecondsPerSecond : static_cast<double>(stored);
  return Date{since2001 + static_cast<double>(kSecondsFrom1970To2001)};
}

/// True for the numbers whose date the library tells rightly: counts of nanoseconds with 18 digits (2004-03-03 to
/// 2032-09-09), of which it reads the first nine.
[[nodiscard]] inline bool isReadRightly(std::int64_t stored) {
  return stored >= 100'000'000'000'000'000 && stored <= 999'999'999'999'999'999;
}

}  // namespace chatsum::device
