// Queues that a test runs by hand. Any thread may add blocks; the test's thread runs them.
#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/interfaces/Dispatch.h"

namespace chatsum::platform::fake {

class FakeDispatch final : public Dispatch {
 public:
  /// True: a block for the global queue starts at once on a thread of its own instead of waiting for `runGlobal`.
  bool globalOnThreads = false;

  void asyncOnMain(std::function<void()> block) override;
  void asyncOnGlobal(std::function<void()> block) override;

  /// Run the blocks that wait on a queue and those they add to it, in order; answer how many ran.
  std::size_t runMain() { return run(main_); }
  std::size_t runGlobal() { return run(global_); }
  /// Runs both queues until nothing waits on either, threads included; answers how many blocks of the queues ran.
  std::size_t runAll();
  /// Turns the blocks that wait on the main queue round, as if the threads that added them had taken other turns.
  void turnMainRound();
  /// Waits for the blocks that run on threads of their own.
  void joinThreads();

  [[nodiscard]] std::size_t mainWaiting() const;
  [[nodiscard]] std::size_t globalWaiting() const;

 private:
  std::size_t run(std::deque<std::function<void()>>& queue);

  mutable std::mutex mutex_;
  std::deque<std::function<void()>> main_;
  std::deque<std::function<void()>> global_;
  std::vector<std::jthread> threads_;
};

}  // namespace chatsum::platform::fake
