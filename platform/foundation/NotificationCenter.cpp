#include "platform/foundation/NotificationCenter.h"

#include <algorithm>
#include <utility>

namespace chatsum {

NotificationCenter& NotificationCenter::defaultCenter() {
  static NotificationCenter center;
  return center;
}

void NotificationCenter::addObserver(const void* observer, std::string_view name, Handler handler) {
  if (!handler) return;
  const std::lock_guard lock(mutex_);
  entries_.push_back({observer, std::string(name), std::make_shared<const Handler>(std::move(handler))});
}

void NotificationCenter::removeObserver(const void* observer) {
  std::vector<Entry> removed;  // destroyed without the lock: a handler's end may end another observer
  const std::lock_guard lock(mutex_);
  std::vector<Entry> kept;
  for (Entry& entry : entries_) (entry.observer == observer ? removed : kept).push_back(std::move(entry));
  entries_ = std::move(kept);
}

bool NotificationCenter::hasObserver(const void* observer) const {
  const std::lock_guard lock(mutex_);
  return std::any_of(entries_.begin(), entries_.end(),
                     [observer](const Entry& entry) { return entry.observer == observer; });
}

void NotificationCenter::post(std::string_view name) {
  std::vector<std::shared_ptr<const Handler>> handlers;
  {
    const std::lock_guard lock(mutex_);
    for (const Entry& entry : entries_) {
      if (entry.name == name) handlers.push_back(entry.handler);
    }
  }
  // Without the lock: a handler may post, add and remove.
  for (const auto& handler : handlers) (*handler)(name);
}

}  // namespace chatsum
