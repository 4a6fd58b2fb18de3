#include "platform/fake/FakeServices.h"

#include <algorithm>

namespace chatsum::platform::fake {

void FakeLog::line(std::string_view text) {
  if (onLine) onLine(text);
  const std::lock_guard lock(mutex_);
  lines_.emplace_back(text);
}

std::vector<std::string> FakeLog::lines() const {
  const std::lock_guard lock(mutex_);
  return lines_;
}

bool FakeLog::contains(std::string_view words) const {
  const std::lock_guard lock(mutex_);
  return std::any_of(lines_.begin(), lines_.end(),
                     [&](const std::string& line) { return line.find(words) != std::string::npos; });
}

void FakeLog::clear() {
  const std::lock_guard lock(mutex_);
  lines_.clear();
}

std::string FakeMainBundle::localizedString(std::string_view key) const {
  const auto found = strings.find(key);
  return found == strings.end() ? std::string(key) : found->second;
}

namespace {

class Library final : public DynamicLibrary {
 public:
  explicit Library(std::map<std::string, FindPersonFunction, std::less<>> symbols) : symbols_(std::move(symbols)) {}
  [[nodiscard]] FindPersonFunction findPersonFunction(std::string_view symbol) const override {
    const auto found = symbols_.find(symbol);
    return found == symbols_.end() ? FindPersonFunction() : found->second;
  }

 private:
  std::map<std::string, FindPersonFunction, std::less<>> symbols_;
};

}  // namespace

std::shared_ptr<DynamicLibrary> FakeRuntime::openLibrary(const std::string& path, int mode) {
  opened.emplace_back(path, mode);
  const auto found = libraries.find(path);
  return found == libraries.end() ? nullptr : std::make_shared<Library>(found->second);
}

void FakeDarwinNotifications::addObserver(void* observer, DarwinCallback callback, std::string_view name,
                                          SuspensionBehaviour suspension) {
  const std::lock_guard lock(mutex_);
  observers_.push_back({observer, callback, std::string(name), suspension});
}

void FakeDarwinNotifications::post(std::string_view name) {
  for (const auto& observer : observers()) {
    if (observer.name == name) observer.callback(observer.observer, name);
  }
}

std::vector<FakeDarwinNotifications::Observer> FakeDarwinNotifications::observers() const {
  const std::lock_guard lock(mutex_);
  return observers_;
}

}  // namespace chatsum::platform::fake
