#include "libchatsum/ChatsumUtils/MessageRowsAhead.h"

#include <array>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "libchatsum/ChatsumUtils/RowLoop.h"

namespace chatsum {
namespace {

constexpr std::size_t kRowsInBatch = 1024;  // some hundred kilobytes: stays in the cache between the threads
constexpr std::size_t kBatches = 4;

/// A ring of batches between the thread that fills them and the one that takes them.
class BatchRing {
 public:
  /// The batch to fill next, empty.
  MessageRowBatch& batchToFill() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return filled_ - taken_ < kBatches; });
    MessageRowBatch& batch = batches_[filled_ % kBatches];
    batch.clear();
    return batch;
  }
  void filled(bool isLast) {
    const std::lock_guard lock(mutex_);
    ++filled_;
    isEnded_ = isLast;
    changed_.notify_all();
  }

  /// The next filled batch, nullptr behind the last one.
  const MessageRowBatch* batchToTake() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return taken_ < filled_ || isEnded_; });
    return taken_ < filled_ ? &batches_[taken_ % kBatches] : nullptr;
  }
  void taken() {
    const std::lock_guard lock(mutex_);
    ++taken_;
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::array<MessageRowBatch, kBatches> batches_;
  std::size_t filled_ = 0, taken_ = 0;
  bool isEnded_ = false;
};

}  // namespace

bool takeRowsAhead(const sqlite::Statement& statement, const std::function<void(const MessageRow&)>& take) {
  BatchRing ring;
  bool isComplete = false;
  {
    const std::jthread reader([&] {
      MessageRowBatch* batch = &ring.batchToFill();
      isComplete = forEachRow(statement, [&] {
        batch->append(statement);
        if (batch->size() < kRowsInBatch) return;
        ring.filled(false);
        batch = &ring.batchToFill();
      });
      ring.filled(true);
    });
    while (const MessageRowBatch* batch = ring.batchToTake()) {
      for (std::size_t i = 0; i < batch->size(); ++i) take((*batch)[i]);
      ring.taken();
    }
  }
  return isComplete;
}

}  // namespace chatsum
