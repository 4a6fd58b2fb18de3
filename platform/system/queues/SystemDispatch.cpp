#include "platform/system/queues/SystemDispatch.h"

#include <utility>

namespace chatsum::platform::system {

SystemDispatch::SystemDispatch(std::function<void()> mainFilled) : mainFilled_(std::move(mainFilled)) {
  threads_.reserve(kMostThreads);
}

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
  bool hasThread = true;
  {
    const std::lock_guard lock(mutex_);
    if (stopping_) return;
    // Blocks may wait for each other, so each gets a thread of its own as long as there are not too many.
    if (global_.size() >= idle_ && threads_.size() < kMostThreads) startThread();
    hasThread = !threads_.empty();
    if (hasThread) global_.push_back(std::move(block));
  }
  if (!hasThread) return block();
  globalWork_.notify_one();
}

void SystemDispatch::startThread() {
  try {
    threads_.emplace_back([this] { work(); });
  } catch (const std::exception&) {
    // No more to be had. Those that are there do, or else the one that brings the block.
  }
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
    try {
      block();
    } catch (...) {
      fail(std::current_exception());
    }
    block = nullptr;  // what it holds goes before the queue counts as idle
    lock.lock();
    --running_;
    if (running_ == 0 && global_.empty()) mainWork_.notify_all();
  }
}

void SystemDispatch::fail(const std::exception_ptr& failure) noexcept {
  {
    const std::lock_guard lock(mutex_);
    if (!failure_) failure_ = failure;
  }
  mainWork_.notify_one();
  try {
    if (mainFilled_) mainFilled_();
  } catch (const std::exception&) {
    // No memory for that either: whoever drains the queue next is told.
  }
}

std::size_t SystemDispatch::drainMain() {
  std::size_t ran = 0;
  std::unique_lock lock(mutex_);
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
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
    mainWork_.wait(lock, [this] { return failure_ || !main_.empty() || (running_ == 0 && global_.empty()); });
    if (main_.empty() && !failure_) return;
  }
}

}  // namespace chatsum::platform::system
