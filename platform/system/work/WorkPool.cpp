#include "platform/system/work/WorkPool.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace chatsum::platform::system {

class WorkPool::Ticket {
 public:
  explicit Ticket(Job work) : job(std::move(work)) {}
  Job job;
  std::exception_ptr failure;              // what the job threw
  bool isClaimed = false, isDone = false;  // under the pool's mutex; who stands in the queue is not claimed
};

WorkPool::WorkPool() : WorkPool(std::max(std::thread::hardware_concurrency(), 2U) - 1) {}

WorkPool::WorkPool(unsigned threads) {
  threads_.reserve(threads);
  try {
    for (unsigned i = 0; i < threads; ++i) threads_.emplace_back([this] { serve(); });
  } catch (const std::exception&) {
    // No more threads or no memory for them. Those that began do, and so does the one that waits.
  }
}

WorkPool::~WorkPool() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_all();
  threads_.clear();
  // Only a pool without threads has something left.
  while (!queue_.empty()) {
    const TicketRef ticket = queue_.front();
    if (claim(ticket)) run(ticket);
  }
}

WorkPool::TicketRef WorkPool::submit(Job job) {
  auto ticket = std::make_shared<Ticket>(std::move(job));
  {
    const std::lock_guard lock(mutex_);
    queue_.push_back(ticket);
  }
  changed_.notify_all();
  return ticket;
}

void WorkPool::wait(const TicketRef& ticket) {
  settle(ticket);
  if (ticket->failure) std::rethrow_exception(ticket->failure);
}

void WorkPool::settle(const TicketRef& ticket) noexcept {
  if (!ticket) return;
  if (claim(ticket)) return run(ticket);
  std::unique_lock lock(mutex_);
  while (!ticket->isDone) {
    // Its thread is at it. Meanwhile the oldest other job is done here.
    if (queue_.empty()) {
      changed_.wait(lock);
      continue;
    }
    const TicketRef other = std::move(queue_.front());
    queue_.pop_front();
    other->isClaimed = true;
    lock.unlock();
    run(other);
    lock.lock();
  }
}

bool WorkPool::claim(const TicketRef& ticket) {
  const std::lock_guard lock(mutex_);
  if (ticket->isClaimed) return false;
  ticket->isClaimed = true;
  // Nearly always the first one.
  queue_.erase(std::find(queue_.begin(), queue_.end(), ticket));
  return true;
}

void WorkPool::run(const TicketRef& ticket) noexcept {
  try {
    ticket->job();
  } catch (...) {
    ticket->failure = std::current_exception();
  }
  ticket->job = nullptr;  // what it holds goes now
  {
    const std::lock_guard lock(mutex_);
    ticket->isDone = true;
  }
  changed_.notify_all();
}

void WorkPool::serve() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return isEnding_ || !queue_.empty(); });
    if (queue_.empty()) return;
    const TicketRef ticket = std::move(queue_.front());
    queue_.pop_front();
    ticket->isClaimed = true;
    lock.unlock();
    run(ticket);
    lock.lock();
  }
}

}  // namespace chatsum::platform::system
