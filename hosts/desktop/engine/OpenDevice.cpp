#include "hosts/desktop/engine/OpenDevice.h"

#include <mutex>
#include <utility>

namespace chatsum::desktop {

void OpenDevice::take(std::unique_ptr<device::DeviceSession> session) {
  const std::lock_guard lock(mutex_);
  session_ = std::move(session);
  number_ = ++lastNumber_;
}

void OpenDevice::close() {
  const std::lock_guard lock(mutex_);
  number_ = 0;
  session_.reset();
}

}  // namespace chatsum::desktop
