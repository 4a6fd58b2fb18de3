// The platform's log: one call, one line.
#pragma once

#include <string_view>

namespace chatsum::platform {

class Log {
 public:
  virtual ~Log() = default;
  /// Records one line (UTF-8, without a line end). Any thread; never fails.
  virtual void line(std::string_view text) = 0;
};

}  // namespace chatsum::platform
