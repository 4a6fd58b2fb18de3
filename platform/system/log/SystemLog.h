// Log lines handed to the host. Any thread.
#pragma once

#include <functional>
#include <mutex>
#include <string_view>

#include "platform/interfaces/Log.h"

namespace chatsum::platform::system {

class SystemLog final : public Log {
 public:
  /// The sink gets one line at a time, on the thread that logs; an empty sink drops lines. It must not log itself.
  explicit SystemLog(std::function<void(std::string_view)> sink) : sink_(std::move(sink)) {}

  void line(std::string_view text) override;

 private:
  std::function<void(std::string_view)> sink_;
  std::mutex mutex_;
};

}  // namespace chatsum::platform::system
