// A dictionary that several owners see and change: the report a screen is editing. Any thread.
#pragma once

#include <mutex>
#include <string_view>
#include <utility>

#include "libchatsum/Export.h"
#include "platform/foundation/Value.h"

namespace chatsum {

class CHATSUM_EXPORT SharedRecord {
 public:
  explicit SharedRecord(Record record) : record_(std::move(record)) {}
  SharedRecord(const SharedRecord&) = delete;
  SharedRecord& operator=(const SharedRecord&) = delete;

  /// What it holds now.
  [[nodiscard]] Record record() const {
    const std::lock_guard lock(mutex_);
    return record_;
  }
  /// The value under the key now, nothing when there is none.
  [[nodiscard]] Value value(std::string_view key) const {
    const std::lock_guard lock(mutex_);
    return record_[key];
  }
  void set(std::string_view key, Value value) {
    const std::lock_guard lock(mutex_);
    record_.set(key, std::move(value));
  }

 private:
  mutable std::mutex mutex_;
  Record record_;
};

}  // namespace chatsum
