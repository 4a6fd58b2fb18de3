#include "hosts/device/stores/SuperJournal.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>

#include "hosts/device/stores/FileDescriptor.h"

namespace chatsum::device {
namespace {

using Magic = std::array<unsigned char, 8>;
constexpr Magic kMagic = {0xD9, 0xD5, 0x05, 0xF9, 0x20, 0xA1, 0x63, 0xD7};

}  // namespace

int dropSuperJournal(const std::string& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
  if (!file) return errno == ENOENT ? 0 : errno;
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) return errno;
  const off_t at = status.st_size - static_cast<off_t>(kMagic.size());
  if (at < 0) return 0;
  Magic end{};
  const auto length = static_cast<ssize_t>(end.size());
  if (::pread(file.get(), end.data(), end.size(), at) != length) return EIO;
  if (end != kMagic) return 0;
  // Without the magic at the very end the name before it is nothing to SQLite; the length of the journal, from which
  // it may count the pages, stays.
  const Magic nothing{};
  return ::pwrite(file.get(), nothing.data(), nothing.size(), at) == length ? 0 : EIO;
}

}  // namespace chatsum::device
