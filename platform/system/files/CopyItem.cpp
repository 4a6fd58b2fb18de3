#include "platform/system/files/CopyItem.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

#include "platform/foundation/PathComponents.h"
#include "platform/system/files/Descriptor.h"

namespace chatsum::platform::system {
namespace {

std::string withoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

bool somethingStandsAt(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

int copyBytes(const Descriptor& source, const Descriptor& target) {
  // A file system that can share the blocks is asked first: nothing is read then.
  if (ioctl(target.get(), FICLONE, source.get()) == 0) return 0;
  std::vector<char> buffer(1 << 18);
  for (;;) {
    const ssize_t count = read(source.get(), buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) return 0;
    if (const int error = target.writeAll({buffer.data(), static_cast<std::size_t>(count)})) return error;
  }
}

/// `kept` are the permissions that a copy may have of its original's.
int copyFile(const std::string& from, const std::string& to, const struct stat& status, mode_t kept) {
  const Descriptor source(open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  if (!source) return errno;
  Descriptor target(open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!target) return errno;
  int error = copyBytes(source, target);
  if (!error && fchmod(target.get(), status.st_mode & kept) != 0) error = errno;
  if (!error) {
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    (void)futimens(target.get(), times.data());  // a nicety that some file systems refuse
    error = target.close();
  }
  if (error) unlink(to.c_str());
  return error;
}

int copyLink(const std::string& from, const std::string& to) {
  std::error_code error;
  const auto target = std::filesystem::read_symlink(from, error);
  if (error) return error.value();
  return symlink(target.c_str(), to.c_str()) == 0 ? 0 : errno;
}

int copyAny(const std::string& from, const std::string& to, mode_t kept);

int copyFolder(const std::string& from, const std::string& to, const struct stat& status, mode_t kept) {
  // Writable for us while it is filled, whatever the original allows.
  if (mkdir(to.c_str(), 0700) != 0) return errno;
  std::error_code failure;
  int error = 0;
  // The names first: a folder that changes under its reader may be listed for ever.
  std::vector<std::string> names;
  std::filesystem::directory_iterator entries(from, failure);
  for (; !failure && entries != std::filesystem::directory_iterator(); entries.increment(failure)) {
    names.push_back(entries->path().filename().string());
  }
  if (failure) error = failure.value();
  for (const auto& name : names) {
    if (error) break;
    error = copyAny(from + "/" + name, to + "/" + name, kept);
  }
  if (!error && chmod(to.c_str(), status.st_mode & kept) != 0) error = errno;
  if (!error) {
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    (void)utimensat(AT_FDCWD, to.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
  }
  if (error) (void)removeItem(to);
  return error;
}

int copyAny(const std::string& from, const std::string& to, mode_t kept) {
  struct stat status {};
  if (lstat(from.c_str(), &status) != 0) return errno;
  if (S_ISREG(status.st_mode)) return copyFile(from, to, status, kept);
  if (S_ISLNK(status.st_mode)) return copyLink(from, to);
  if (S_ISDIR(status.st_mode)) return copyFolder(from, to, status, kept);
  return ENOTSUP;  // pipes, sockets and devices hold nothing to copy
}

/// True when `to` would stand inside the folder `from`, so that copying would never end.
bool liesInside(const std::string& from, const std::string& to) {
  std::error_code error;
  const auto outer = std::filesystem::canonical(from, error);
  if (error) return false;
  const auto inner = std::filesystem::weakly_canonical(to, error);
  if (error) return false;
  return inner.native().starts_with(outer.native() + "/");
}

/// A rename for file systems that cannot promise not to overwrite: the look before it leaves a small gap.
int renameAfterLooking(const std::string& from, const std::string& to) {
  if (somethingStandsAt(to)) return EEXIST;
  return rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

int copyWith(const std::string& from, const std::string& to, mode_t kept) {
  const std::string source = withoutTrailingSlashes(from);
  const std::string target = withoutTrailingSlashes(to);
  struct stat status {};
  if (lstat(source.c_str(), &status) != 0) return errno;
  if (somethingStandsAt(target)) return EEXIST;
  if (S_ISDIR(status.st_mode) && liesInside(source, target)) return EINVAL;
  return copyAny(source, target, kept);
}

int copyThenRemove(const std::string& from, const std::string& to) {
  if (const int error = copyWith(from, to, 0777)) return error;
  const bool isFolder = std::filesystem::is_directory(std::filesystem::symlink_status(from));
  const int error = removeItem(from);
  // A folder may be half removed: then the copy is the only whole one and stays.
  if (error && !isFolder) (void)removeItem(to);
  return error;
}

}  // namespace

int copyItem(const std::string& from, const std::string& to) { return copyWith(from, to, 0700); }

int moveItem(const std::string& from, const std::string& to) {
  const std::string source = withoutTrailingSlashes(from);
  const std::string target = withoutTrailingSlashes(to);
  if (renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) return 0;
  int error = errno;
  // EINVAL is also a folder moved into itself; the plain rename then says so once more.
  if (error == EINVAL || error == ENOSYS || error == ENOTSUP) error = renameAfterLooking(source, target);
  if (error == EXDEV) error = copyThenRemove(source, target);
  return error;
}

int removeItem(const std::string& path) {
  const std::string item = withoutTrailingSlashes(path);
  if (item == "/") return EPERM;
  if (!somethingStandsAt(item)) return errno;
  std::error_code error;
  std::filesystem::remove_all(item, error);
  return error.value();
}

}  // namespace chatsum::platform::system
