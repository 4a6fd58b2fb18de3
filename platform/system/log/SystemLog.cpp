#include "platform/system/log/SystemLog.h"

namespace chatsum::platform::system {

void SystemLog::line(std::string_view text) {
  if (!sink_) return;
  const std::lock_guard lock(mutex_);
  try {
    sink_(text);
  } catch (...) {
    // A log that fails must not fail what it tells about.
  }
}

}  // namespace chatsum::platform::system
