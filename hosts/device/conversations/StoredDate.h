// Dates as Messages stores keep them. No state, any thread.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/foundation/Date.h"

namespace chatsum::device {

/// Seconds stay below 10^11 until the year 5170; nanoseconds pass it 100 seconds after their epoch.
[[nodiscard]] inline bool isInSeconds(std::int64_t stored) {
  constexpr std::int64_t kLargestSeconds = 100'000'000'000;
  return stored >= -kLargestSeconds && stored <= kLargestSeconds;
}

/// The number as the view of the messages hands it out; numbers that are too large for it are cut off.
[[nodiscard]] inline std::int64_t nanosecondsOf(std::int64_t stored) {
  constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
  constexpr std::int64_t kMost = 9'000'000'000;
  if (!isInSeconds(stored)) return stored;
  return (stored > kMost ? kMost : stored < -kMost ? -kMost : stored) * kNanosecondsPerSecond;
}

/// The point in time of a stored number: nanoseconds since 2001-01-01T00:00:00Z when its absolute value is above 10^11,
/// else seconds. 0 is no date. One store may hold both forms.
[[nodiscard]] inline std::optional<Date> dateFromStored(std::int64_t stored) {
  constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000, kNanosecondsPerMicrosecond = 1000;
  constexpr double kMicrosecondsPerSecond = 1e6;
  if (stored == 0) return std::nullopt;
  if (isInSeconds(stored)) return Date{static_cast<double>(stored + kSecondsFrom1970To2001)};
  // Cut to what a double can tell from the next second.
  std::int64_t seconds = stored / kNanosecondsPerSecond, rest = stored % kNanosecondsPerSecond;
  if (rest < 0) {
    --seconds;
    rest += kNanosecondsPerSecond;
  }
  const double fraction = static_cast<double>(rest / kNanosecondsPerMicrosecond) / kMicrosecondsPerSecond;
  return Date{static_cast<double>(seconds + kSecondsFrom1970To2001) + fraction};
}

/// True for the numbers whose date the library tells rightly: counts of nanoseconds with 18 digits (2004-03-03 to
/// 2032-09-09), of which it reads the first nine.
[[nodiscard]] inline bool isReadRightly(std::int64_t stored) {
  return stored >= 100'000'000'000'000'000 && stored <= 999'999'999'999'999'999;
}

}  // namespace chatsum::device
