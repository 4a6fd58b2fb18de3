#include "platform/system/files/AtomicWrite.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <optional>

#include "platform/foundation/PathComponents.h"
#include "platform/system/files/Descriptor.h"
#include "platform/system/files/UnfinishedFiles.h"

namespace chatsum::platform::system {
namespace {

/// Removes the temporary file unless it was moved into place.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::string path) : path_(std::move(path)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!path_.empty()) unlink(path_.c_str());
  }
  [[nodiscard]] int moveTo(const std::string& target) {
    if (rename(path_.c_str(), target.c_str()) != 0) return errno;
    path_.clear();
    return 0;
  }

 private:
  std::string path_;
};

}  // namespace

int writeFileAtomically(const std::string& path, std::string_view bytes, mode_t newMode) {
  std::optional<mode_t> oldMode;
  struct stat old {};
  if (lstat(path.c_str(), &old) == 0) {
    if (S_ISDIR(old.st_mode)) return EISDIR;
    if (S_ISREG(old.st_mode)) oldMode = old.st_mode & 0777;
  }

  const std::string folder = path::deletingLastComponent(path);
  const FolderInUse inUse(folder.empty() ? "." : folder);
  std::string temporary;
  Descriptor file;
  for (int attempt = 0; !file && attempt < 16; ++attempt) {
    const std::string name = unfinishedName();
    if (name.empty()) return errno;
    temporary = folder.empty() ? name : path::appending(folder, name);
    // A private file stays private from the first byte on.
    file = Descriptor(
        open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, oldMode.value_or(newMode)));
    if (!file && errno != EEXIST && errno != EINTR) return errno;
  }
  if (!file) return errno;

  TemporaryFile cleanup(temporary);
  if (oldMode && fchmod(file.get(), *oldMode) != 0) return errno;
  if (const int error = file.writeAll(bytes)) return error;
  if (const int error = file.close()) return error;
  return cleanup.moveTo(path);
}

}  // namespace chatsum::platform::system
