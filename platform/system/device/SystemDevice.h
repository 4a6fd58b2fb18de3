// The device the source comes from, as its host describes it. Any thread.
#pragma once

#include <string>
#include <utility>

#include "platform/interfaces/Device.h"

namespace chatsum::platform::system {

class SystemDevice final : public Device {
 public:
  explicit SystemDevice(std::string systemVersion) : systemVersion_(std::move(systemVersion)) {}
  [[nodiscard]] std::string systemVersion() const override { return systemVersion_; }

 private:
  std::string systemVersion_;
};

}  // namespace chatsum::platform::system
