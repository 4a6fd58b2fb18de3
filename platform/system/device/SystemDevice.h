// The device the source comes from, as its host describes it. Any thread.
#pragma once

#include <string>
#include <utility>

#include "platform/interfaces/Device.h"

namespace chatsum::platform::system {

class SystemDevice final : public Device {
 public:
  SystemDevice(std::string systemVersion, double screenScale)
      : systemVersion_(std::move(systemVersion)), screenScale_(screenScale) {}
  [[nodiscard]] std::string systemVersion() const override { return systemVersion_; }
  [[nodiscard]] bool screenHasDisplayLink() const override { return true; }
  [[nodiscard]] double screenScale() const override { return screenScale_; }

 private:
  std::string systemVersion_;
  double screenScale_;
};

}  // namespace chatsum::platform::system
