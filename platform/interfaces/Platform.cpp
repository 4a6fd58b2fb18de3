#include "platform/interfaces/Platform.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace chatsum::platform {
namespace {

std::atomic<Platform*>& slot() {
  static std::atomic<Platform*> platform{nullptr};
  return platform;
}

}  // namespace

Platform* install(Platform* platform) { return slot().exchange(platform); }

Platform& current() {
  Platform* platform = slot().load(std::memory_order_acquire);
  if (!platform) {
    std::fputs("chatsum: no platform is installed; call chatsum::platform::install first\n", stderr);
    std::abort();
  }
  return *platform;
}

}  // namespace chatsum::platform
