// The system-wide notification centre, as far as one process needs it: what is posted here is told here. Any thread.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "platform/interfaces/DarwinNotifications.h"

namespace chatsum::platform::system {

/// Notifications of other processes do not arrive. Observers are told on the posting thread, in the order they came;
/// all of them at once, since nothing here is ever suspended.
class SystemDarwinNotifications final : public DarwinNotifications {
 public:
  void addObserver(void* observer, DarwinCallback callback, std::string_view name,
                   SuspensionBehaviour suspension) override;
  void post(std::string_view name) override;

 private:
  struct Observer {
    void* observer;
    DarwinCallback callback;
    std::string name;
  };
  std::mutex mutex_;
  std::vector<Observer> observers_;
};

}  // namespace chatsum::platform::system
