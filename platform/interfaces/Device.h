// The machine the library runs on.
#pragma once

#include <string>

namespace chatsum::platform {

class Device {
 public:
  virtual ~Device() = default;
  /// The operating system's version, such as "9.3.5". Any thread.
  [[nodiscard]] virtual std::string systemVersion() const = 0;
  /// Whether the main screen is one that drives a display link; those before it have no scale worth asking. Any thread.
  [[nodiscard]] virtual bool screenHasDisplayLink() const = 0;
  /// Pixels per point of the main screen. Any thread.
  [[nodiscard]] virtual double screenScale() const = 0;
};

}  // namespace chatsum::platform
