// Queues of work.
#pragma once

#include <functional>

namespace chatsum::platform {

class Dispatch {
 public:
  virtual ~Dispatch() = default;
  /// Runs the block on the main queue, after the blocks given before it; returns at once. Any thread.
  virtual void asyncOnMain(std::function<void()> block) = 0;
  /// Runs the block on the global queue of default priority, on some thread, in no order; returns at once. Any thread.
  virtual void asyncOnGlobal(std::function<void()> block) = 0;
};

}  // namespace chatsum::platform
