// Notifications inside the process, by name. Observers are not owned; they are told on the thread that posts, before
// the post returns. Any thread.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace chatsum {

class NotificationCenter {
 public:
  using Handler = std::function<void(std::string_view name)>;

  /// The one of the process, made on first use.
  static NotificationCenter& defaultCenter();

  NotificationCenter() = default;
  NotificationCenter(const NotificationCenter&) = delete;
  NotificationCenter& operator=(const NotificationCenter&) = delete;

  /// Runs the handler for every later notification of that name, whoever posts it. An observer may add several, also
  /// for one name.
  void addObserver(const void* observer, std::string_view name, Handler handler);
  /// Takes the observer out for all names. A post that runs on another thread may still be telling it: a handler that
  /// uses its observer holds it weakly.
  void removeObserver(const void* observer);
  /// Whether the observer has a handler for any name.
  [[nodiscard]] bool hasObserver(const void* observer) const;
  /// Tells the observers of the name, in the order in which they were added.
  void post(std::string_view name);

 private:
  struct Entry {
    const void* observer;
    std::string name;
    std::shared_ptr<const Handler> handler;
  };
  mutable std::mutex mutex_;
  std::vector<Entry> entries_;
};

}  // namespace chatsum
