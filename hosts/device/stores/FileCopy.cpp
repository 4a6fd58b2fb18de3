#include "hosts/device/stores/FileCopy.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstddef>

#include "hosts/device/stores/FileDescriptor.h"

namespace chatsum::device {
namespace {

// Answers whether everything was copied; otherwise the caller starts over with plain reading.
bool copyInKernel(const FileDescriptor& source, const FileDescriptor& target, off_t expected) {
  constexpr std::size_t kMost = std::size_t{1} << 30;
  off_t copied = 0;
  for (;;) {
    const ssize_t step = ::copy_file_range(source.get(), nullptr, target.get(), nullptr, kMost, 0);
    if (step < 0) return false;
    if (step == 0) return copied >= expected;
    copied += step;
  }
}

int writeAll(const FileDescriptor& target, const char* bytes, std::size_t length) {
  while (length > 0) {
    const ssize_t written = ::write(target.get(), bytes, length);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    bytes += written;
    length -= static_cast<std::size_t>(written);
  }
  return 0;
}

int copyByReading(const FileDescriptor& source, const FileDescriptor& target) {
  if (::lseek(source.get(), 0, SEEK_SET) != 0 || ::ftruncate(target.get(), 0) != 0) return errno;
  if (::lseek(target.get(), 0, SEEK_SET) != 0) return errno;
  std::array<char, 1 << 16> buffer;
  for (;;) {
    const ssize_t got = ::read(source.get(), buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno;
    if (got == 0) return 0;
    if (const int error = writeAll(target, buffer.data(), static_cast<std::size_t>(got))) return error;
  }
}

}  // namespace

int copyFile(const std::string& from, const std::string& to) {
  const FileDescriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!source) return errno;
  struct stat status {};
  if (::fstat(source.get(), &status) != 0) return errno;
  if (!S_ISREG(status.st_mode)) return EINVAL;
  const FileDescriptor target(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!target) return errno;
  if (::ioctl(target.get(), FICLONE, source.get()) == 0) return 0;
  if (copyInKernel(source, target, status.st_size)) return 0;
  return copyByReading(source, target);
}

}  // namespace chatsum::device
