#include "platform/fake/FakeDispatch.h"

#include <algorithm>

namespace chatsum::platform::fake {

void FakeDispatch::asyncOnMain(std::function<void()> block) {
  const std::lock_guard lock(mutex_);
  main_.push_back(std::move(block));
}

void FakeDispatch::asyncOnGlobal(std::function<void()> block) {
  const std::lock_guard lock(mutex_);
  if (globalOnThreads) {
    threads_.emplace_back(std::move(block));
  } else {
    global_.push_back(std::move(block));
  }
}

std::size_t FakeDispatch::run(std::deque<std::function<void()>>& queue) {
  std::size_t ran = 0;
  std::unique_lock lock(mutex_);
  while (!queue.empty()) {
    const auto block = std::move(queue.front());
    queue.pop_front();
    lock.unlock();
    block();
    ++ran;
    lock.lock();
  }
  return ran;
}

std::size_t FakeDispatch::runAll() {
  std::size_t ran = 0;
  for (;;) {
    joinThreads();
    const std::size_t more = runGlobal() + runMain();
    const std::unique_lock lock(mutex_);
    if (more == 0 && threads_.empty()) return ran;
    ran += more;
  }
}

void FakeDispatch::turnMainRound() {
  const std::lock_guard lock(mutex_);
  std::reverse(main_.begin(), main_.end());
}

void FakeDispatch::joinThreads() {
  std::vector<std::jthread> threads;
  {
    const std::lock_guard lock(mutex_);
    threads.swap(threads_);
  }
}

std::size_t FakeDispatch::mainWaiting() const {
  const std::lock_guard lock(mutex_);
  return main_.size();
}

std::size_t FakeDispatch::globalWaiting() const {
  const std::lock_guard lock(mutex_);
  return global_.size();
}

}  // namespace chatsum::platform::fake
