// A file under a hidden name beside its target, until it is whole. Removed with its owner unless it was moved into
// place. One thread at a time; the static operations may be called from any thread.
#pragma once

#include <chrono>
#include <mutex>
#include <string>

#include "platform/system/files/UnfinishedFiles.h"

namespace chatsum::device {

class PartialFile {
 public:
  /// Names a new file in the folder, which is there, with that extension; nothing is made yet.
  PartialFile(const std::string& folder, const std::string& extension);
  PartialFile(const PartialFile&) = delete;
  PartialFile& operator=(const PartialFile&) = delete;
  ~PartialFile();

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string name() const { return path_.substr(path_.rfind('/') + 1); }

  /// Moves the file into place in one step. Answers 0 or errno; EEXIST when something stands there and `replace` is not
  /// set.
  [[nodiscard]] int moveTo(const std::string& target, bool replace);

  /// Held while a file is being written that nobody else would remove. Ends of the process wait for it.
  [[nodiscard]] static std::unique_lock<std::timed_mutex> writing();
  /// Waits so long at most for writing to end and keeps it from beginning anew, then removes every partial file of this
  /// process. For ends that run no destructors.
  static void removeAll(std::chrono::milliseconds patience);

 private:
  platform::system::FolderInUse inUse_;
  std::string path_;
};

}  // namespace chatsum::device
