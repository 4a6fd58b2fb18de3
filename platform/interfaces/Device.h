// The machine the library runs on.
#pragma once

#include <string>

namespace chatsum::platform {

class Device {
 public:
  virtual ~Device() = default;
  /// The operating system's version, such as "9.3.5". Any thread.
  [[nodiscard]] virtual std::string systemVersion() const = 0;
};

}  // namespace chatsum::platform
