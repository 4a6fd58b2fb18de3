#include "hosts/desktop/engine/DateWords.h"

#include <cmath>
#include <ctime>

#include "hosts/desktop/engine/Texts.h"

namespace chatsum::desktop {

DateWords::DateWords(std::optional<Date> now) : clock_(now), formatting_(clock_) {}

QString DateWords::textOf(const Form& form, Date date) const {
  if (!form.text) form.text = formatting_.withStyles(form.date, form.time, form.isRelative);
  TextBuffer text;
  form.text->append(date, text);
  return shownText(text.view());
}

std::int64_t DateWords::dayNumber(Date date) {
  constexpr double kMostSeconds = 1e12;  // some ten thousand years
  constexpr std::int64_t kMoreThanDaysOfYear = 400;
  if (!(std::fabs(date.secondsSince1970) < kMostSeconds)) return 0;
  const auto seconds = static_cast<std::time_t>(std::floor(date.secondsSince1970));
  std::tm fields{};
  if (!::localtime_r(&seconds, &fields)) return 0;
  return fields.tm_year * kMoreThanDaysOfYear + fields.tm_yday;
}

}  // namespace chatsum::desktop
