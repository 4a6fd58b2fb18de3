// Dates as the window shows them, in the user's language and zone. Main thread.
#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/foundation/Date.h"
#include "platform/interfaces/DateFormatting.h"
#include "platform/system/dates/SystemClock.h"
#include "platform/system/dates/SystemDateFormatting.h"

namespace chatsum::desktop {

class DateWords {
 public:
  /// `now` is what today is; none: the machine's time.
  explicit DateWords(std::optional<Date> now = std::nullopt);

  /// "Monday, January 6, 2020"; "Today" and "Yesterday".
  [[nodiscard]] QString day(Date date) const { return textOf(day_, date); }
  /// "Jan 6, 2020"; "Today" and "Yesterday".
  [[nodiscard]] QString shortDay(Date date) const { return textOf(shortDay_, date); }
  /// "10:40 AM".
  [[nodiscard]] QString time(Date date) const { return textOf(time_, date); }
  /// "Jan 6, 2020 at 10:40 AM", as the language has it.
  [[nodiscard]] QString moment(Date date) const { return textOf(moment_, date); }

  /// The same for all times of one day in the process's zone.
  [[nodiscard]] static std::int64_t dayNumber(Date date);

 private:
  struct Form {
    platform::DateStyle date, time;
    bool isRelative;
    mutable std::unique_ptr<platform::DateText> text = nullptr;  // made when it is needed
  };
  [[nodiscard]] QString textOf(const Form& form, Date date) const;

  platform::system::SystemClock clock_;
  platform::system::SystemDateFormatting formatting_;
  Form day_{platform::DateStyle::kFull, platform::DateStyle::kNone, true};
  Form shortDay_{platform::DateStyle::kMedium, platform::DateStyle::kNone, true};
  Form time_{platform::DateStyle::kNone, platform::DateStyle::kShort, false};
  Form moment_{platform::DateStyle::kMedium, platform::DateStyle::kShort, false};
};

}  // namespace chatsum::desktop
