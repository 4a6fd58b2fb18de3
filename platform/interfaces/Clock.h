// The time of day.
#pragma once

#include "platform/foundation/Date.h"

namespace chatsum::platform {

class Clock {
 public:
  virtual ~Clock() = default;
  /// The current time with its fraction of a second. Any thread.
  [[nodiscard]] virtual Date now() const = 0;
};

}  // namespace chatsum::platform
