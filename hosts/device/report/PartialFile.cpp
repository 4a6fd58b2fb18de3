#include "hosts/device/report/PartialFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <set>
#include <utility>

namespace chatsum::device {
namespace {

struct Registry {
  std::mutex mutex;
  std::set<std::string> paths;
  std::timed_mutex writing;

  static Registry& shared() {
    static auto* registry = new Registry;  // never destroyed: the end of the process may need it
    return *registry;
  }
};

// A plain rename replaces what stands there, so the kernel is asked not to; a file system that cannot do that gets a
// hard link, which refuses by itself.
int moveWithoutReplacing(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  if (::link(from.c_str(), to.c_str()) == 0) {
    ::unlink(from.c_str());
    return 0;
  }
  if (errno == EEXIST) return EEXIST;
  struct stat status {};
  if (::lstat(to.c_str(), &status) == 0) return EEXIST;
  return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

}  // namespace

PartialFile::PartialFile(const std::string& folder, const std::string& extension)
    : inUse_(folder),
      path_(folder + "/" + platform::system::unfinishedName() + (extension.empty() ? "" : "." + extension)) {
  Registry& registry = Registry::shared();
  const std::lock_guard lock(registry.mutex);
  registry.paths.insert(path_);
}

PartialFile::~PartialFile() {
  Registry& registry = Registry::shared();
  const std::lock_guard lock(registry.mutex);
  if (registry.paths.erase(path_) > 0) ::unlink(path_.c_str());
}

int PartialFile::moveTo(const std::string& target, bool replace) {
  Registry& registry = Registry::shared();
  const std::lock_guard lock(registry.mutex);
  int error = 0;
  if (!replace) {
    error = moveWithoutReplacing(path_, target);
  } else if (::rename(path_.c_str(), target.c_str()) != 0) {
    error = errno;
  }
  if (error == 0) registry.paths.erase(path_);
  return error;
}

std::unique_lock<std::timed_mutex> PartialFile::writing() { return std::unique_lock(Registry::shared().writing); }

void PartialFile::removeAll(std::chrono::milliseconds patience) {
  Registry& registry = Registry::shared();
  if (registry.writing.try_lock_for(patience)) {
    // Kept: the process ends now.
  }
  const std::lock_guard lock(registry.mutex);
  for (const std::string& path : std::exchange(registry.paths, {})) ::unlink(path.c_str());
}

}  // namespace chatsum::device
