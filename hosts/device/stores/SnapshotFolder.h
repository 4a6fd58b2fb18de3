// A private temporary folder for copies of stores: mode 0700, locked while its owner lives, removed with it.
// What a killed process left behind is removed by the next one. The static operations may be called from any thread,
// an object is used by one at a time.
#pragma once

#include <string>
#include <string_view>

#include "hosts/device/stores/FileDescriptor.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

class SnapshotFolder {
 public:
  /// Makes the folder `chatsum-XXXXXX` in `parent`.
  [[nodiscard]] static StoreResult<SnapshotFolder> create(const std::string& parent = defaultParent());

  /// `$TMPDIR` when it is an absolute path of a folder, else `/tmp`.
  [[nodiscard]] static std::string defaultParent();

  /// Removes the folders in `parent` that belong to this user and whose owner is gone (their lock can be taken), and
  /// answers how many. Folders in use, of other users, and everything else are left alone. Call it once at start.
  static int removeOrphans(const std::string& parent = defaultParent());

  /// Removes every folder that this process still has, for ends that run no destructors. Not for signal handlers.
  static void removeAll();

  SnapshotFolder(SnapshotFolder&& other) noexcept;
  SnapshotFolder& operator=(SnapshotFolder&& other) noexcept;
  ~SnapshotFolder();

  /// The folder's absolute path, without a slash at its end.
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  SnapshotFolder(std::string path, FileDescriptor lock);
  void remove();

  std::string path_;
  FileDescriptor lock_;
};

}  // namespace chatsum::device
