#include "platform/system/files/ReadFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "platform/system/files/Descriptor.h"

namespace chatsum::platform::system {

std::optional<std::string> readFile(const std::string& path, std::size_t mostBytes) {
  // A pipe in the file's place would make the open wait for a writer.
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (!file || fstat(file.get(), &status) != 0) return std::nullopt;
  if (!S_ISREG(status.st_mode)) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return std::nullopt;
  }
  // One byte more than there should be: a file that grows meanwhile is read to its end, within the limit.
  std::string bytes(std::min(static_cast<std::size_t>(status.st_size), mostBytes) + 1, '\0');
  for (std::size_t filled = 0;;) {
    const ssize_t got = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    filled += static_cast<std::size_t>(got);
    if (filled > mostBytes) {
      errno = EFBIG;
      return std::nullopt;
    }
    if (got == 0) {
      bytes.resize(filled);
      return bytes;
    }
    if (filled == bytes.size()) bytes.resize(std::min(2 * bytes.size(), mostBytes + 1));
  }
}

}  // namespace chatsum::platform::system
