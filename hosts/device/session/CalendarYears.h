// Dates as people read them: around New Year the year of the week may differ from the calendar's, and in a report that
// looks like a wrong date.
#pragma once

#include <memory>
#include <string_view>

#include "platform/interfaces/DateFormatting.h"

namespace chatsum::device {

/// Writes the calendar's year wherever a pattern asks for the year of the week; all else is as the service behind it
/// has it, which must outlive this. Any thread.
class CalendarYears final : public platform::DateFormatting {
 public:
  explicit CalendarYears(const platform::DateFormatting& dates) : dates_(dates) {}

  [[nodiscard]] std::unique_ptr<platform::DateText> withPattern(std::string_view pattern) const override;
  [[nodiscard]] std::unique_ptr<platform::DateText> withStyles(platform::DateStyle date, platform::DateStyle time,
                                                               bool relative) const override;

 private:
  const platform::DateFormatting& dates_;
};

}  // namespace chatsum::device
