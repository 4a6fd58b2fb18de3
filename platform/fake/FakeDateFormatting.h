// The real date formatting, in a locale and zone that a test chooses. A test chooses while no other thread formats.
#pragma once

#include <memory>
#include <string>

#include "platform/interfaces/Clock.h"
#include "platform/interfaces/DateFormatting.h"
#include "platform/system/dates/SystemDateFormatting.h"

namespace chatsum::platform::fake {

class FakeDateFormatting final : public DateFormatting {
 public:
  /// American English in UTC. The clock must outlive it.
  explicit FakeDateFormatting(const Clock& clock) : clock_(clock) { use("en_US", "UTC"); }

  /// For texts made later.
  void use(std::string locale, std::string zone) {
    real_ = std::make_unique<system::SystemDateFormatting>(clock_,
                                                           system::DateSettings{std::move(locale), std::move(zone)});
  }
  [[nodiscard]] std::unique_ptr<DateText> withPattern(std::string_view pattern) const override {
    return real_->withPattern(pattern);
  }
  [[nodiscard]] std::unique_ptr<DateText> withStyles(DateStyle date, DateStyle time, bool relative) const override {
    return real_->withStyles(date, time, relative);
  }

 private:
  const Clock& clock_;
  std::unique_ptr<system::SystemDateFormatting> real_;
};

}  // namespace chatsum::platform::fake
