// How a user answers a request for access to contacts. A test sets it while no other thread asks.
#pragma once

#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace chatsum::platform::fake {

enum class AnswerTime {
  kAtOnce,         ///< before the request returns, on its thread
  kOnOtherThread,  ///< on another thread, maybe after the request returned
  kByHand,         ///< when the test calls `answerAll`
};

/// Any thread.
class FakeAccess {
 public:
  bool granted = true;
  AnswerTime time = AnswerTime::kAtOnce;

  void request(std::function<void(bool)> completion) {
    std::unique_lock lock(mutex_);
    ++requests_;
    if (time == AnswerTime::kAtOnce) {
      lock.unlock();  // the completion may ask again
      completion(granted);
    } else if (time == AnswerTime::kOnOtherThread) {
      threads_.emplace_back([completion = std::move(completion), answer = granted] { completion(answer); });
    } else {
      waiting_.push_back(std::move(completion));
    }
  }

  /// Answers every request that waits; tells how many that were.
  std::size_t answerAll() {
    std::vector<std::function<void(bool)>> waiting;
    {
      const std::lock_guard lock(mutex_);
      waiting.swap(waiting_);
    }
    for (const auto& completion : waiting) completion(granted);
    return waiting.size();
  }

  /// How often access was asked for.
  [[nodiscard]] int requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
  }
  [[nodiscard]] std::size_t waiting() const {
    const std::lock_guard lock(mutex_);
    return waiting_.size();
  }

 private:
  mutable std::mutex mutex_;
  int requests_ = 0;
  std::vector<std::function<void(bool)>> waiting_;
  std::vector<std::jthread> threads_;
};

}  // namespace chatsum::platform::fake
