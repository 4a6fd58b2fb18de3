// Decrypted copies of what stands encrypted in a source, in one private folder that goes with its owner. Those of
// stores stay; of the files of messages, which may be many, the oldest go. Any thread; copies are made one after the
// other.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/device/stores/SnapshotFolder.h"

namespace chatsum::device {

class PrivateCopies {
 public:
  struct Limits {
    std::size_t most = 256;
    std::uint64_t mostBytes = std::uint64_t{512} << 20;
    /// So many of the newest stay even when they are longer together.
    std::size_t fewest = 48;
  };

  explicit PrivateCopies(SnapshotFolder folder);
  PrivateCopies(SnapshotFolder folder, const Limits& limits);

  [[nodiscard]] const std::string& folder() const { return folder_.path(); }

  /// The path for a copy that stays. `name` is one component that no other copy has and begins with a letter.
  [[nodiscard]] std::string pathFor(const std::string& name) const;

  /// The path of the copy of what is called `name`, a path. When there is none, `make` makes it at the path that it is
  /// given and answers its bytes; none when it cannot, and then it leaves no file. Copies end as `name` does, ".jpg".
  [[nodiscard]] std::optional<std::string> copyOf(
      const std::string& name, const std::function<std::optional<std::uint64_t>(const std::string& path)>& make);

 private:
  struct Copy {
    std::string name;
    std::string path;
    std::uint64_t bytes = 0;
  };

  void removeOldest();

  SnapshotFolder folder_;
  Limits limits_;
  std::mutex mutex_;
  std::list<Copy> copies_;  // those asked for last stand first
  std::uint64_t bytes_ = 0;
  std::uint64_t made_ = 0;
};

}  // namespace chatsum::device
