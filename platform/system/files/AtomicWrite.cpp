#include "platform/system/files/AtomicWrite.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <optional>

#include "platform/foundation/PathComponents.h"
#include "platform/system/files/Descriptor.h"

namespace chatsum::platform::system {
namespace {

/// A name that nobody can guess and prepare. It does not hold the file's own name, which may be as long as names can
/// be.
std::string temporaryName() {
  std::uint64_t random = 0;
  if (getrandom(&random, sizeof random, 0) != static_cast<ssize_t>(sizeof random)) return "";
  std::array<char, 40> name{};
  std::snprintf(name.data(), name.size(), ".chatsum-%016llx", static_cast<unsigned long long>(random));
  return name.data();
}

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
  std::string temporary;
  Descriptor file;
  for (int attempt = 0; !file && attempt < 16; ++attempt) {
    const std::string name = temporaryName();
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
