#include "libchatsum/ChatsumUtils/MessageRowsAhead.h"

#include <array>
#include <condition_variable>
#include <mutex>

#include "libchatsum/ChatsumUtils/RowLoop.h"
#include "platform/foundation/SideThread.h"

namespace chatsum {
namespace {

// Some hundred kilobytes stay in the cache between the threads; long texts must not pile up either.
constexpr std::size_t kRowsInBatch = 1024;
constexpr std::size_t kBytesInBatch = 256 * 1024;
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
  void filled() {
    const std::lock_guard lock(mutex_);
    ++filled_;
    changed_.notify_all();
  }
  /// No more will be filled.
  void end() {
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
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

/// Tells the one that takes that no more comes, also when filling failed.
class EndOfRing {
 public:
  explicit EndOfRing(BatchRing& ring) : ring_(ring) {}
  EndOfRing(const EndOfRing&) = delete;
  EndOfRing& operator=(const EndOfRing&) = delete;
  ~EndOfRing() { ring_.end(); }

 private:
  BatchRing& ring_;
};

/// Lets the thread that fills come to its end, also when the one that takes gave up.
class Drain {
 public:
  explicit Drain(BatchRing& ring) : ring_(ring) {}
  Drain(const Drain&) = delete;
  Drain& operator=(const Drain&) = delete;
  ~Drain() {
    while (ring_.batchToTake()) ring_.taken();
  }

 private:
  BatchRing& ring_;
};

bool fill(const sqlite::Statement& statement, BatchRing& ring) {
  MessageRowBatch* batch = &ring.batchToFill();
  const bool isComplete = forEachRow(statement, [&] {
    batch->append(statement);
    if (batch->size() < kRowsInBatch && batch->bytes() < kBytesInBatch) return;
    ring.filled();
    batch = &ring.batchToFill();
  });
  ring.filled();
  return isComplete;
}

bool takeRowsOneByOne(const sqlite::Statement& statement, const std::function<void(const MessageRow&)>& take) {
  MessageRowBatch row;
  return forEachRow(statement, [&] {
    row.clear();
    row.append(statement);
    take(row[0]);
  });
}

}  // namespace

bool takeRowsAhead(const sqlite::Statement& statement, const std::function<void(const MessageRow&)>& take) {
  BatchRing ring;
  bool isComplete = false;
  SideThread reader([&] {
    const EndOfRing end(ring);
    isComplete = fill(statement, ring);
  });
  if (!reader.hasThread()) return takeRowsOneByOne(statement, take);
  {
    const Drain drain(ring);
    while (const MessageRowBatch* batch = ring.batchToTake()) {
      for (std::size_t i = 0; i < batch->size(); ++i) take((*batch)[i]);
      ring.taken();
    }
  }
  reader.join();
  return isComplete;
}

}  // namespace chatsum
