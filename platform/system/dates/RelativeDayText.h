// Writes the days around today as words ("Today", "Yesterday"), other dates as their locale does. One thread at a time.
#pragma once

#include <unicode/locid.h>
#include <unicode/reldatefmt.h>

#include <memory>
#include <optional>
#include <string>

#include "platform/interfaces/Clock.h"
#include "platform/system/dates/DayText.h"

namespace chatsum::platform::system {

class RelativeDayText final : public DateText {
 public:
  /// `absolute` has date and time, `time` only the time (none when the text shall have no time). The clock says what
  /// today is at each call; it must outlive this.
  RelativeDayText(const icu::Locale& locale, std::shared_ptr<const DateFormatter> absolute,
                  std::shared_ptr<const DateFormatter> time, const Clock& clock);
  void append(Date date, TextBuffer& text) override;

 private:
  /// The word for a day so many days from today, empty when the locale has none.
  [[nodiscard]] icu::UnicodeString word(double days) const;

  std::shared_ptr<const DateFormatter> formatter_;
  DayText absolute_;
  std::optional<DayText> time_;
  const Clock& clock_;
  ZoneOffset offset_;
  ZoneOffset todaysOffset_;
  std::unique_ptr<icu::RelativeDateTimeFormatter> words_;
};

}  // namespace chatsum::platform::system
