// Streams of a PDF file that are made on other threads and written in the order they were asked for. Few are under way
// at a time, so that memory stays small. One thread at a time.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/system/pdf/PdfFile.h"
#include "platform/system/work/WorkPool.h"

namespace chatsum::platform::system {

/// A stream object that is ready to be written. The dictionary is as PdfFile::writeStream takes it.
struct PdfStream {
  int number = 0;
  std::string dictionary, bytes;
};

class StreamQueue {
 public:
  /// Makes streams on any thread. What it throws comes out of the queue's operations; then nothing more is to be added.
  using Job = std::function<std::vector<PdfStream>()>;

  /// File and pool must outlive the queue.
  StreamQueue(PdfFile& file, WorkPool& pool) : file_(file), pool_(pool) {}
  /// Waits for what is under way, and forgets it.
  ~StreamQueue();
  StreamQueue(const StreamQueue&) = delete;
  StreamQueue& operator=(const StreamQueue&) = delete;

  /// `weight` is about as many bytes as the job holds until it is written. Writes what must make room for it.
  void add(std::size_t weight, Job job);
  /// Writes everything that was added.
  void finish();

 private:
  struct Item {
    std::size_t weight;
    Job job;
    std::vector<PdfStream> made;
    WorkPool::TicketRef ticket;
  };
  void writeOldest();

  PdfFile& file_;
  WorkPool& pool_;
  std::deque<std::unique_ptr<Item>> items_;
  std::size_t weight_ = 0;
};

}  // namespace chatsum::platform::system
