// The machine's clock.
#pragma once

#include <chrono>
#include <optional>

#include "platform/interfaces/Clock.h"

namespace chatsum::platform::system {

/// Any thread.
class SystemClock final : public Clock {
 public:
  SystemClock() = default;
  /// One that stands still at a time, when there is one.
  explicit SystemClock(std::optional<Date> fixed) : fixed_(fixed) {}

  [[nodiscard]] Date now() const override {
    if (fixed_) return *fixed_;
    return {std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count()};
  }

 private:
  std::optional<Date> fixed_;
};

}  // namespace chatsum::platform::system
