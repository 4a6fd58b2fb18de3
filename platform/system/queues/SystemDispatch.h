// Queues on threads of this process. Any thread; the main queue is drained by the host, on the thread it calls main.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/interfaces/Dispatch.h"

namespace chatsum::platform::system {

/// Threads are started when blocks need them, a few at most. Blocks must not throw. When it is destroyed it is stopped.
class SystemDispatch final : public Dispatch {
 public:
  /// `mainFilled`, when there is one, is told of a block that came onto an empty main queue, on the thread that brought
  /// it.
  explicit SystemDispatch(std::function<void()> mainFilled = nullptr) : mainFilled_(std::move(mainFilled)) {}
  ~SystemDispatch() override;

  /// Waits for running blocks and drops those that wait, on all queues, with what they hold; blocks that come later are
  /// dropped, too. Not from inside a block.
  void stop();

  void asyncOnMain(std::function<void()> block) override;
  void asyncOnGlobal(std::function<void()> block) override;

  /// Runs the blocks that wait on the main queue, and those that they add, in order. Answers how many ran. To be
  /// called on the main thread only, not from inside a block.
  std::size_t drainMain();

  /// Drains the main queue until nothing waits or runs on any queue. As `drainMain`.
  void runMainUntilIdle();

 private:
  void work();

  static constexpr std::size_t kMostThreads = 8;

  const std::function<void()> mainFilled_;
  std::mutex mutex_;
  std::condition_variable globalWork_;
  std::condition_variable mainWork_;  // a block for the main queue, or the global queue fell idle
  std::deque<std::function<void()>> main_;
  std::deque<std::function<void()>> global_;
  std::size_t idle_ = 0;
  std::size_t running_ = 0;
  bool stopping_ = false;
  std::vector<std::jthread> threads_;
};

}  // namespace chatsum::platform::system
