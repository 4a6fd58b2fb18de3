// A file has a name of its own while it is written; people are told the one that it gets. Any thread.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

namespace chatsum::device {

class WorkingName {
 public:
  void set(std::string working, std::string shown) {
    const std::lock_guard lock(mutex_);
    working_ = std::move(working);
    shown_ = std::move(shown);
  }

  /// The text with the name that the file gets wherever it has the other.
  [[nodiscard]] std::string shown(std::string_view text) const {
    std::string told(text);
    const std::lock_guard lock(mutex_);
    if (working_.empty()) return told;
    for (auto at = told.find(working_); at != std::string::npos; at = told.find(working_, at + shown_.size())) {
      told.replace(at, working_.size(), shown_);
    }
    return told;
  }

 private:
  mutable std::mutex mutex_;
  std::string working_, shown_;
};

}  // namespace chatsum::device
