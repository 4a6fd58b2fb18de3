// Work on a thread of its own, beside what its owner does meanwhile. The owner's thread uses it.
#pragma once

#include <exception>
#include <functional>
#include <thread>

namespace chatsum {

class SideThread {
 public:
  /// Begins the work on a new thread. When none can be started, `join` does the work on the owner's.
  explicit SideThread(std::function<void()> work);
  /// Waits for work that has begun on its thread. What that throws is dropped: the owner gave up before.
  ~SideThread() = default;
  SideThread(const SideThread&) = delete;
  SideThread& operator=(const SideThread&) = delete;

  /// Whether a thread does the work.
  [[nodiscard]] bool hasThread() const { return hasThread_; }
  /// Waits until the work is done, and throws what the work threw (missing memory: std::bad_alloc). To be called once.
  void join();

 private:
  std::function<void()> work_;
  std::exception_ptr failure_;  // the thread's until it is joined
  bool hasThread_ = false;
  std::jthread thread_;
};

}  // namespace chatsum
