#include "platform/system/files/MakeFolder.h"

#include <sys/stat.h>

#include <cerrno>

#include "platform/system/files/AtomicWrite.h"

namespace chatsum::platform::system {

int makeFolder(const std::string& path) {
  int error = path.empty() ? ENOENT : 0;
  for (std::size_t end = 0; !error && end != std::string::npos;) {
    end = path.find('/', end + 1);
    const std::string part = path.substr(0, end);
    if (mkdir(part.c_str(), kPrivateFolder) == 0) continue;
    error = errno;
    // An existing folder is what was asked for, also one on a file system that answers "read-only" before looking.
    struct stat status {};
    if (stat(part.c_str(), &status) == 0)
      error = S_ISDIR(status.st_mode) ? 0 : end == std::string::npos ? EEXIST : ENOTDIR;
  }
  return error;
}

}  // namespace chatsum::platform::system
