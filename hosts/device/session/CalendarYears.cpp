#include "hosts/device/session/CalendarYears.h"

#include <string>

namespace chatsum::device {

std::unique_ptr<platform::DateText> CalendarYears::withPattern(std::string_view pattern) const {
  std::string calendar(pattern);
  bool isQuoted = false;  // what stands between apostrophes is text
  for (char& c : calendar) {
    if (c == '\'') isQuoted = !isQuoted;
    if (c == 'Y' && !isQuoted) c = 'y';
  }
  return dates_.withPattern(calendar);
}

std::unique_ptr<platform::DateText> CalendarYears::withStyles(platform::DateStyle date, platform::DateStyle time,
                                                              bool relative) const {
  return dates_.withStyles(date, time, relative);
}

}  // namespace chatsum::device
