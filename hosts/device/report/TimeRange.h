// Points in time as people write them, and the stretch of time a report covers. Uses the process's time zone (TZ).
// Pure functions: any thread, as long as nobody changes TZ meanwhile.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Date.h"

namespace chatsum::device {

/// A stretch of time; a missing end is open.
struct TimeRange {
  std::optional<Date> since;   ///< the first instant inside
  std::optional<Date> until;   ///< the last instant inside
  std::optional<Date> before;  ///< the first instant behind, when a whole day is the end

  [[nodiscard]] bool isOpen() const { return !since && !until && !before; }
  [[nodiscard]] bool contains(Date date) const {
    return (!since || date >= *since) && (!until || date <= *until) && (!before || date < *before);
  }
  /// No instant can be inside.
  [[nodiscard]] bool isEmpty() const { return since && ((until && *until < *since) || (before && *before <= *since)); }
};

/// Reads an ISO 8601 time: "2024-03-31" (the start of that day), or a day with a clock time behind "T" or a blank
/// ("2024-03-31T18:05", "2024-03-31 18:05:30.5"), in the local zone unless "Z" or an offset ("+02:00", "-0500")
/// follows. None for anything else and for days and times that do not exist.
[[nodiscard]] std::optional<Date> parseTime(std::string_view text);

/// Sets the start of the range; false when the text is no time.
[[nodiscard]] bool setSince(TimeRange& range, std::string_view text);
/// Sets the end of the range, a day alone being inside to its end; false when the text is no time.
[[nodiscard]] bool setUntil(TimeRange& range, std::string_view text);

/// "2020-01-06T05:40:00-05:00": the instant in the local zone, whole seconds.
[[nodiscard]] std::string isoTime(Date date);

}  // namespace chatsum::device
