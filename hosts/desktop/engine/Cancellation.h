// Says that nobody waits for some work any more. Copies share it. Any thread.
#pragma once

#include <atomic>
#include <memory>

namespace chatsum::desktop {

class Cancellation {
 public:
  void cancel() const { *isCancelled_ = true; }
  [[nodiscard]] bool isCancelled() const { return *isCancelled_; }
  bool operator==(const Cancellation& other) const { return isCancelled_ == other.isCancelled_; }

 private:
  std::shared_ptr<std::atomic<bool>> isCancelled_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace chatsum::desktop
