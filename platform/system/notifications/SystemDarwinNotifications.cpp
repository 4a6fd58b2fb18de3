#include "platform/system/notifications/SystemDarwinNotifications.h"

namespace chatsum::platform::system {

void SystemDarwinNotifications::addObserver(void* observer, DarwinCallback callback, std::string_view name,
                                            SuspensionBehaviour /*suspension*/) {
  const std::lock_guard lock(mutex_);
  observers_.push_back({observer, callback, std::string(name)});
}

void SystemDarwinNotifications::post(std::string_view name) {
  std::vector<Observer> told;
  {
    const std::lock_guard lock(mutex_);
    for (const auto& observer : observers_) {
      if (observer.name == name) told.push_back(observer);
    }
  }
  // Without the lock: a callback may observe or post itself.
  for (const auto& observer : told) observer.callback(observer.observer, observer.name);
}

}  // namespace chatsum::platform::system
