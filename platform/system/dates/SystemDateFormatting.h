// Dates in words, written by ICU. Any thread; lives as long as its platform, as does the clock it is given.
#pragma once

#include <memory>
#include <string>

#include "platform/interfaces/Clock.h"
#include "platform/interfaces/DateFormatting.h"

namespace chatsum::platform::system {

struct DateSettings {
  /// Such as "en_US" or "de_DE@calendar=gregorian"; empty: LC_ALL, LC_TIME or LANG says it.
  std::string locale;
  /// Such as "Europe/Berlin", or a rule such as "CET-1CEST,M3.5.0,M10.5.0/3"; empty: TZ or the machine's setting.
  std::string zone;
};

/// Locale and zone are read once, when the first date is asked for; until then nothing of ICU is touched. The thin
/// space that newer locale data puts before AM and PM is written as a plain one. A date that is no number has an empty
/// text; one beyond what ICU can tell is written as ICU's first or last.
class SystemDateFormatting final : public DateFormatting {
 public:
  explicit SystemDateFormatting(const Clock& clock, DateSettings settings = {});
  ~SystemDateFormatting() override;

  [[nodiscard]] std::unique_ptr<DateText> withPattern(std::string_view pattern) const override;
  [[nodiscard]] std::unique_ptr<DateText> withStyles(DateStyle date, DateStyle time, bool relative) const override;

 private:
  class Formatters;
  [[nodiscard]] Formatters& formatters() const;

  const Clock& clock_;
  DateSettings settings_;
  mutable std::unique_ptr<Formatters> formatters_;
  struct Once;
  std::unique_ptr<Once> once_;
};

}  // namespace chatsum::platform::system
