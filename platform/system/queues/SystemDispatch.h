// Queues on threads of this process. Any thread; the main queue is drained by the host, on the thread it calls main.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/interfaces/Dispatch.h"

namespace chatsum::platform::system {

/// Threads are started when blocks need them, a few at most; while none can be had, `asyncOnGlobal` runs its block at
/// once. What a global block throws (std::bad_alloc) comes out where the main queue is drained next. When it is
/// destroyed it is stopped.
class SystemDispatch final : public Dispatch {
 public:
  /// `mainFilled`, when there is one, is told of a block that came onto an empty main queue, on the thread that brought
  /// it, and of a global block that threw.
  explicit SystemDispatch(std::function<void()> mainFilled = nullptr);
  ~SystemDispatch() override;

  /// Waits for running blocks and drops those that wait, on all queues, with what they hold; blocks that come later are
  /// dropped, too. Not from inside a block.
  void stop();

  void asyncOnMain(std::function<void()> block) override;
  void asyncOnGlobal(std::function<void()> block) override;

  /// Runs the blocks that wait on the main queue, and those that they add, in order. Answers how many ran. What a block
  /// throws comes out here; those behind it wait for the next call. To be called on the main thread only, not from
  /// inside a block.
  std::size_t drainMain();

  /// Drains the main queue until nothing waits or runs on any queue. As `drainMain`.
  void runMainUntilIdle();

 private:
  /// Starts one more thread if one can be had.
  void startThread();
  void work();
  void fail(const std::exception_ptr& failure) noexcept;

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
  std::exception_ptr failure_;  // of a global block, the first that nobody was told of
  std::vector<std::jthread> threads_;
};

}  // namespace chatsum::platform::system
