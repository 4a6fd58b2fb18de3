#include "platform/system/queues/SystemDispatch.h"

#include <utility>

namespace chatsum::platform::system {

SystemDispatch::~SystemDispatch() { stop(); }

void SystemDispatch::stop() {
  std::deque<std::function<void()>> waiting;
  std::vector<std::jthread> threads;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    waiting = std::move(global_);
    global_.clear();
    threads = std::move(threads_);
    threads_.clear();
  }
  globalWork_.notify_all();
  threads.clear();  // joins them
  waiting.clear();
  {
    const std::lock_guard lock(mutex_);
    waiting.swap(main_);
  }
}

void SystemDispatch::asyncOnMain(std::function<void()> block) {
  bool wasEmpty = false;
  {
    const std::lock_guard lock(mutex_);
    if (stopping_) return;
    wasEmpty = main_.empty();
    main_.push_back(std::move(block));
  }
  mainWork_.notify_one();
  if (wasEmpty && mainFilled_) mainFilled_();
}

void SystemDispatch::asyncOnGlobal(std::function<void()> block) {
  {
    const std::lock_guard lock(mutex_);
    if (stopping_) return;
    global_.push_back(std::move(block));
    // Blocks may wait for each other, so each gets a thread of its own as long as there are not too many.
    if (global_.size() > idle_ && threads_.size() < kMostThreads) threads_.emplace_back([this] { work(); });
  }
  globalWork_.notify_one();
}

void SystemDispatch::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    ++idle_;
    globalWork_.wait(lock, [this] { return stopping_ || !global_.empty(); });
    --idle_;
    if (stopping_) return;
    auto block = std::move(global_.front());
    global_.pop_front();
    ++running_;
    lock.unlock();
    block();
    block = nullptr;  // what it holds goes before the queue counts as idle
    lock.lock();
    --running_;
    if (running_ == 0 && global_.empty()) mainWork_.notify_all();
  }
}

std::size_t SystemDispatch::drainMain() {
  std::size_t ran = 0;
  std::unique_lock lock(mutex_);
  while (!main_.empty()) {
    auto block = std::move(main_.front());
    main_.pop_front();
    lock.unlock();
    block();
    block = nullptr;
    ++ran;
    lock.lock();
  }
  return ran;
}

void SystemDispatch::runMainUntilIdle() {
  for (;;) {
    drainMain();
    std::unique_lock lock(mutex_);
    mainWork_.wait(lock, [this] { return !main_.empty() || (running_ == 0 && global_.empty()); });
    if (main_.empty()) return;
  }
}

}  // namespace chatsum::platform::system
