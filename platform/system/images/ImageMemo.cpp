#include "platform/system/images/ImageMemo.h"

#include <algorithm>

#include "platform/system/images/PictureLimits.h"

namespace chatsum::platform::system {

ImageMemo::Opened ImageMemo::find(const Key& key, const std::function<Opened()>& open) {
  {
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(key);
    if (found != entries_.end()) {
      found->second.lastUse = ++uses_;
      return found->second.opened;
    }
  }
  // Opening takes its time; two threads may do it at once, and the first one's result stays.
  Opened opened = open();
  const std::lock_guard lock(mutex_);
  if (scopes_ == 0) return opened;
  Entry& entry = entries_.try_emplace(key, Entry{std::move(opened), 0}).first->second;
  entry.lastUse = ++uses_;
  Opened kept = entry.opened;
  while (entries_.size() > limits::kRememberedPictures ||
         (entries_.size() > 1 && keptBytes() > limits::kRememberedBytes)) {
    forgetOldest();
  }
  return kept;
}

void ImageMemo::begin() {
  const std::lock_guard lock(mutex_);
  ++scopes_;
}

void ImageMemo::end() {
  const std::lock_guard lock(mutex_);
  if (--scopes_ == 0) entries_.clear();
}

void ImageMemo::forgetOldest() {
  entries_.erase(std::min_element(entries_.begin(), entries_.end(), [](const auto& one, const auto& other) {
    return one.second.lastUse < other.second.lastUse;
  }));
}

std::size_t ImageMemo::keptBytes() const {
  std::size_t bytes = 0;
  for (const auto& [key, entry] : entries_) {
    if (entry.opened.picture) bytes += entry.opened.picture->keptBytes();
    if (entry.opened.page) bytes += entry.opened.page->keptBytes();
  }
  return bytes;
}

}  // namespace chatsum::platform::system
