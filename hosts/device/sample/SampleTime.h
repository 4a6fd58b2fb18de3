// Points in time as the sample's scripts write them. Pure functions: any thread.
#pragma once

#include <charconv>
#include <chrono>
#include <cstdint>
#include <string_view>

namespace chatsum::device {

/// Seconds since 2001-01-01T00:00:00Z of "2021-12-31 23:41", UTC.
[[nodiscard]] inline std::int64_t secondsSince2001(std::string_view moment) {
  using namespace std::chrono;
  const auto numberAt = [moment](std::size_t start, std::size_t length) {
    int number = 0;
    std::from_chars(moment.data() + start, moment.data() + start + length, number);
    return number;
  };
  const sys_days day = year(numberAt(0, 4)) / month(static_cast<unsigned>(numberAt(5, 2))) /
                       std::chrono::day(static_cast<unsigned>(numberAt(8, 2)));
  const auto sinceEpoch = day - sys_days(year(2001) / January / 1);
  return duration_cast<seconds>(sinceEpoch).count() + numberAt(11, 2) * 3600 + numberAt(14, 2) * 60;
}

}  // namespace chatsum::device
