// The machine's clock.
#pragma once

#include <chrono>

#include "platform/interfaces/Clock.h"

namespace chatsum::platform::system {

/// Any thread.
class SystemClock final : public Clock {
 public:
  [[nodiscard]] Date now() const override {
    return {std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count()};
  }
};

}  // namespace chatsum::platform::system
