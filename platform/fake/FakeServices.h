// The small services a test sets by hand. Their members are set while no other thread reads them; what several threads
// write at once has a lock.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/interfaces/Platform.h"

namespace chatsum::platform::fake {

/// Keeps every line.
class FakeLog final : public Log {
 public:
  /// Called with each line before it is kept, on the thread that logs; may be empty.
  std::function<void(std::string_view)> onLine;
  void line(std::string_view text) override;
  [[nodiscard]] std::vector<std::string> lines() const;
  /// True when a line holds the words.
  [[nodiscard]] bool contains(std::string_view words) const;
  void clear();

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

/// Stands still until it is moved. Starts at 2020-01-06T10:40:00Z.
class FakeClock final : public Clock {
 public:
  [[nodiscard]] Date now() const override { return {seconds_.load()}; }
  void set(Date date) { seconds_ = date.secondsSince1970; }
  void advance(double seconds) { seconds_ = seconds_.load() + seconds; }

 private:
  std::atomic<double> seconds_{1578307200};
};

class FakeMainBundle final : public MainBundle {
 public:
  std::string bundleIdentifier = "com.apple.MobileSMS";
  std::map<std::string, std::string, std::less<>> strings;  ///< key → text; another key is its own text
  [[nodiscard]] std::string identifier() const override { return bundleIdentifier; }
  [[nodiscard]] std::string localizedString(std::string_view key) const override;
};

class FakeDevice final : public Device {
 public:
  std::string version = "17.0";
  bool hasDisplayLink = true;
  double scale = 2;
  [[nodiscard]] std::string systemVersion() const override { return version; }
  [[nodiscard]] bool screenHasDisplayLink() const override { return hasDisplayLink; }
  [[nodiscard]] double screenScale() const override { return scale; }
};

class FakeRuntime final : public Runtime {
 public:
  std::set<std::string, std::less<>> classes = {"UIAlertController"};
  /// Path → symbol → function; a path that is not here cannot be loaded.
  std::map<std::string, std::map<std::string, FindPersonFunction, std::less<>>> libraries;
  std::vector<std::pair<std::string, int>> opened;  ///< path and mode of every openLibrary
  [[nodiscard]] bool hasClass(std::string_view name) const override { return classes.contains(name); }
  [[nodiscard]] std::shared_ptr<DynamicLibrary> openLibrary(const std::string& path, int mode) override;
};

class FakeMessages final : public Messages {
 public:
  std::optional<std::string> owner;
  std::vector<std::string> imageTypes = {"public.jpeg", "public.png", "com.compuserve.gif", "public.tiff",
                                         "public.heic"};
  [[nodiscard]] std::optional<std::string> ownerFullName() const override { return owner; }
  [[nodiscard]] const std::vector<std::string>& imageMediaTypes() const override { return imageTypes; }
};

/// A member of a conversation with public parts.
class FakeEntity final : public CKEntity {
 public:
  std::string shownName;
  IMHandle entityHandle;
  std::optional<ABRecordRef> record;
  FakeEntity() = default;
  FakeEntity(std::string name, IMHandle handle, std::optional<ABRecordRef> abRecord = std::nullopt)
      : shownName(std::move(name)), entityHandle(std::move(handle)), record(std::move(abRecord)) {}
  [[nodiscard]] std::string name() const override { return shownName; }
  [[nodiscard]] IMHandle handle() const override { return entityHandle; }
  [[nodiscard]] std::optional<ABRecordRef> abRecord() const override { return record; }
};

class FakeConversation final : public CKConversation {
 public:
  std::vector<std::string> guids;
  std::vector<CKEntityRef> entities;
  FakeConversation() = default;
  explicit FakeConversation(std::vector<std::string> chatGuids, std::vector<CKEntityRef> recipientEntities = {})
      : guids(std::move(chatGuids)), entities(std::move(recipientEntities)) {}
  [[nodiscard]] std::vector<std::string> chatGuids() const override { return guids; }
  [[nodiscard]] std::vector<CKEntityRef> recipients() const override { return entities; }
};

/// Posted by hand, on the posting thread.
class FakeDarwinNotifications final : public DarwinNotifications {
 public:
  struct Observer {
    void* observer;
    DarwinCallback callback;
    std::string name;
    SuspensionBehaviour suspension;
  };
  void addObserver(void* observer, DarwinCallback callback, std::string_view name,
                   SuspensionBehaviour suspension) override;
  void post(std::string_view name) override;
  [[nodiscard]] std::vector<Observer> observers() const;

 private:
  mutable std::mutex mutex_;
  std::vector<Observer> observers_;
};

}  // namespace chatsum::platform::fake
