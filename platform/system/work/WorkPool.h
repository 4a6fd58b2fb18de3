// A few threads that take jobs from a queue. Who waits for a job does queued ones meanwhile, so a pool without any
// thread still works. Any thread.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace chatsum::platform::system {

class WorkPool {
 public:
  /// What is to be done. What it throws comes out of `wait`.
  using Job = std::function<void()>;
  /// One job under way. Kept by whoever waits for it.
  class Ticket;
  using TicketRef = std::shared_ptr<Ticket>;

  /// As many threads as the machine has cores beside the caller's, at least one; fewer when no more can be had.
  WorkPool();
  explicit WorkPool(unsigned threads);
  /// Does what is queued, then ends.
  ~WorkPool();
  WorkPool(const WorkPool&) = delete;
  WorkPool& operator=(const WorkPool&) = delete;

  /// Threads of the pool and the one that waits.
  [[nodiscard]] unsigned width() const { return static_cast<unsigned>(threads_.size()) + 1; }
  [[nodiscard]] TicketRef submit(Job job);
  /// Returns when the job is done, and throws what the job threw; does it on this thread when no other has begun it.
  void wait(const TicketRef& ticket);
  /// As `wait`, for who gives up: nothing is thrown. Nothing to wait for without a ticket.
  void settle(const TicketRef& ticket) noexcept;

 private:
  void serve();
  /// Takes a job out of the queue if it still stands there.
  bool claim(const TicketRef& ticket);
  void run(const TicketRef& ticket) noexcept;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<TicketRef> queue_;
  bool isEnding_ = false;
  std::vector<std::jthread> threads_;
};

}  // namespace chatsum::platform::system
