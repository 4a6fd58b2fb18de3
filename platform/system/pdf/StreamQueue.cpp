#include "platform/system/pdf/StreamQueue.h"

#include <utility>

namespace chatsum::platform::system {
namespace {

// The same on every machine, because what is written before what depends on it.
constexpr std::size_t kMostItems = 16;
constexpr std::size_t kMostWeight = 64 * 1024 * 1024;

}  // namespace

StreamQueue::~StreamQueue() {
  for (const auto& item : items_) pool_.settle(item->ticket);
}

void StreamQueue::add(std::size_t weight, Job job) {
  // After an error nothing will be written, so nothing is made.
  if (file_.error()) return;
  while (!items_.empty() && (items_.size() >= kMostItems || weight_ + weight > kMostWeight)) writeOldest();
  items_.push_back(std::make_unique<Item>(Item{weight, std::move(job), {}, nullptr}));
  weight_ += weight;
  Item& item = *items_.back();
  item.ticket = pool_.submit([&item] {
    item.made = item.job();
    item.job = nullptr;  // what it holds goes now
  });
}

void StreamQueue::finish() {
  while (!items_.empty()) writeOldest();
}

void StreamQueue::writeOldest() {
  const std::unique_ptr<Item> item = std::move(items_.front());
  items_.pop_front();
  weight_ -= item->weight;
  pool_.wait(item->ticket);
  for (const PdfStream& stream : item->made) file_.writeStream(stream.number, stream.dictionary, stream.bytes);
}

}  // namespace chatsum::platform::system
