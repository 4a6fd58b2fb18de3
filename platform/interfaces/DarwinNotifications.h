// The system-wide notification centre.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::platform {

/// A plain function that is told of a notification: the observer as registered and the notification's name.
using DarwinCallback = void (*)(void* observer, std::string_view name);

enum class SuspensionBehaviour { kDrop = 1, kCoalesce = 2, kHold = 3, kDeliverImmediately = 4 };

class DarwinNotifications {
 public:
  virtual ~DarwinNotifications() = default;
  /// Calls `callback` for every later notification with the name, on any thread.
  virtual void addObserver(void* observer, DarwinCallback callback, std::string_view name,
                           SuspensionBehaviour suspension) = 0;
  /// Tells every observer of the name.
  virtual void post(std::string_view name) = 0;
};

}  // namespace chatsum::platform
