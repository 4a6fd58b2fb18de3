// What a host with a screen puts in the place of the services that show nothing.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/interfaces/Companion.h"
#include "platform/interfaces/Screen.h"

namespace chatsum::platform::system {

struct HostScreen {
  /// Shows alerts and previews; must outlive the platform. Null: nothing is shown and no question is answered.
  Screen* screen = nullptr;
  /// Makes a busy indicator. Never answers null; called on any thread, what it makes is used on the main queue. Empty:
  /// indicators show nothing.
  std::function<std::shared_ptr<OBActivityAlertController>(const std::string& title, const std::string& message)>
      indicator = nullptr;
  /// Told when a block got onto the main queue that was empty; any thread. The host drains the queue soon after, on its
  /// main thread. Empty: the host drains it by itself.
  std::function<void()> mainQueueFilled = nullptr;
};

}  // namespace chatsum::platform::system
