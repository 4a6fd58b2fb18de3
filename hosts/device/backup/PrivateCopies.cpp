#include "hosts/device/backup/PrivateCopies.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "platform/foundation/PathComponents.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kLongestEnding = 16;

/// ".jpg" of a path; nothing when the ending is unusual, because it is the device's and would stand in a path of ours.
std::string endingOf(std::string_view name) {
  const std::string_view extension = path::extensionView(name);
  const bool isPlain = std::all_of(extension.begin(), extension.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  });
  if (extension.empty() || extension.size() > kLongestEnding || !isPlain) return "";
  return "." + std::string(extension);
}

}  // namespace

PrivateCopies::PrivateCopies(SnapshotFolder folder) : PrivateCopies(std::move(folder), Limits()) {}

PrivateCopies::PrivateCopies(SnapshotFolder folder, const Limits& limits)
    : folder_(std::move(folder)), limits_(limits) {}

std::string PrivateCopies::pathFor(const std::string& name) const { return folder_.path() + "/" + name; }

std::optional<std::string> PrivateCopies::copyOf(
    const std::string& name, const std::function<std::optional<std::uint64_t>(const std::string&)>& make) {
  const std::lock_guard lock(mutex_);
  const auto known = std::find_if(copies_.begin(), copies_.end(), [&](const Copy& copy) { return copy.name == name; });
  if (known != copies_.end()) {
    copies_.splice(copies_.begin(), copies_, known);
    return copies_.front().path;
  }
  // A number: the name itself might be too long, and no two copies ever share a path, so nobody takes one for another.
  const std::string path = pathFor(std::to_string(++made_) + endingOf(name));
  const auto bytes = make(path);
  if (!bytes) return std::nullopt;
  copies_.push_front({name, path, *bytes});
  bytes_ += *bytes;
  removeOldest();
  return path;
}

void PrivateCopies::removeOldest() {
  while (copies_.size() > limits_.most || (bytes_ > limits_.mostBytes && copies_.size() > limits_.fewest)) {
    ::unlink(copies_.back().path.c_str());
    bytes_ -= copies_.back().bytes;
    copies_.pop_back();
  }
}

}  // namespace chatsum::device
