// A password that the worker needs and the person at the window gives. `wait` on the worker, the rest on any thread.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>

namespace chatsum::desktop {

/// Writes over bytes that nobody shall find in memory afterwards.
void wipe(char* bytes, std::size_t count);

class PasswordQuestion {
 public:
  ~PasswordQuestion();

  /// Waits for an answer and takes it; none once the question is given up.
  [[nodiscard]] std::optional<std::string> wait();
  /// UTF-8.
  void answer(std::string password);
  void giveUp();

 private:
  void forget();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<std::string> password_;
  bool isGivenUp_ = false;
};

}  // namespace chatsum::desktop
