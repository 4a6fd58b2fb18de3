// Time-zone rules as POSIX writes them in TZ, such as "CET-1CEST,M3.5.0,M10.5.0/3". Any thread.
#pragma once

#include <unicode/timezone.h>

#include <memory>
#include <string_view>

namespace chatsum::platform::system {

/// The zone of a rule; nullptr when the text is none. A zone with summer time but without dates takes those of the
/// United States. A change at an hour outside its day is moved to the day's nearer end, and a day that is counted with
/// 29 February is taken as in a common year.
[[nodiscard]] std::unique_ptr<icu::TimeZone> zoneFromPosixRule(std::string_view rule);

}  // namespace chatsum::platform::system
