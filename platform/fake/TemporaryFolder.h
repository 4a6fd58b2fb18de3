// A folder of a test's own, removed with all it holds when its owner goes.
#pragma once

#include <string>

namespace chatsum::platform::fake {

class TemporaryFolder {
 public:
  /// Makes the folder below TMPDIR (else /tmp). Throws std::system_error when that fails.
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// No trailing "/", no symbolic link in it.
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace chatsum::platform::fake
