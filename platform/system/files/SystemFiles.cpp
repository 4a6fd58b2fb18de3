#include "platform/system/files/SystemFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <string>

#include "platform/foundation/PathComponents.h"
#include "platform/system/files/AtomicWrite.h"
#include "platform/system/files/CopyItem.h"
#include "platform/system/files/Descriptor.h"
#include "platform/system/files/MakeFolder.h"
#include "platform/system/files/ReadFile.h"

namespace chatsum::platform::system {
namespace {

std::string quoted(const std::string& text) { return "“" + text + "”"; }

/// "The file “a.txt” couldn’t be saved in the folder “/b”".
std::string sentence(const char* what, const std::string& path, const char* failed, const char* preposition) {
  std::string folder = path::deletingLastComponent(path);
  if (folder.empty()) folder = ".";
  return std::string("The ") + what + " " + quoted(path::lastComponent(path)) + " couldn’t be " + failed + " " +
         preposition + " the folder " + quoted(folder);
}

std::optional<Error> result(int number, const std::string& what) {
  if (number == 0) return std::nullopt;
  return Error::posix(number, what);
}

class SystemFileHandle final : public FileHandle {
 public:
  SystemFileHandle(Descriptor file, std::string path) : file_(std::move(file)), path_(std::move(path)) {}

  std::uint64_t seekToEnd() override {
    const off_t end = lseek(file_.get(), 0, SEEK_END);
    return end < 0 ? 0 : static_cast<std::uint64_t>(end);
  }

  void truncateAt(std::uint64_t offset) override {
    const auto place = static_cast<off_t>(offset);
    // A full disk may refuse; the next write then reports what is wrong.
    if (ftruncate(file_.get(), place) == 0) lseek(file_.get(), place, SEEK_SET);
  }

  std::optional<Error> write(std::string_view bytes) override {
    return result(file_.writeAll(bytes), sentence("file", path_, "written", "in"));
  }

 private:
  Descriptor file_;
  std::string path_;
};

/// Opens a file for writing. What is no file there is EEXIST: a pipe would make us wait for a reader, perhaps for ever.
Descriptor openOrdinary(const std::string& path, int flags) {
  Descriptor file(open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | flags, kPrivateFile));
  if (!file && errno == ENXIO) errno = EEXIST;  // a pipe without a reader, a socket
  struct stat status {};
  if (file && (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))) {
    file = Descriptor();
    errno = EEXIST;
  }
  return file;
}

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

Date dateOf(const statx_timestamp& time) {
  return {static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9};
}

}  // namespace

std::string SystemFiles::real(const std::string& path) const {
  // The system would read a path only up to a zero byte, and touch another file than the one that was meant.
  if (path.find('\0') != std::string::npos) return "";
  std::string mapped = options_.mapPath ? options_.mapPath(path) : path;
  return mapped.find('\0') == std::string::npos ? mapped : "";
}

bool SystemFiles::exists(const std::string& path) const {
  struct stat status {};
  return stat(real(path).c_str(), &status) == 0;
}

bool SystemFiles::isDirectory(const std::string& path) const {
  struct stat status {};
  return stat(real(path).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<std::vector<std::string>> SystemFiles::list(const std::string& path) const {
  const std::unique_ptr<DIR, CloseFolder> folder(opendir(real(path).c_str()));
  if (!folder) return std::nullopt;
  std::vector<std::string> names;
  for (;;) {
    errno = 0;
    const dirent* entry = readdir(folder.get());
    if (!entry) break;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  if (errno != 0) return std::nullopt;
  return names;
}

FileAttributes SystemFiles::attributes(const std::string& path) const {
  struct statx status {};
  if (statx(AT_FDCWD, real(path).c_str(), AT_SYMLINK_NOFOLLOW, STATX_SIZE | STATX_BTIME | STATX_MTIME, &status) != 0) {
    return {};
  }
  FileAttributes result;
  // Not every file system keeps the time of birth; the last change is the nearest thing to it.
  if (status.stx_mask & STATX_BTIME) {
    result.creationDate = dateOf(status.stx_btime);
  } else if (status.stx_mask & STATX_MTIME) {
    result.creationDate = dateOf(status.stx_mtime);
  }
  if (status.stx_mask & STATX_SIZE) result.size = status.stx_size;
  return result;
}

std::optional<Error> SystemFiles::createDirectory(const std::string& path) {
  const int error = makeFolder(real(path));
  return result(error, sentence("folder", path, "created", "in"));
}

std::optional<Error> SystemFiles::move(const std::string& from, const std::string& to) {
  return result(moveItem(real(from), real(to)),
                quoted(path::lastComponent(from)) + " couldn’t be moved to " + quoted(to));
}

std::optional<Error> SystemFiles::copy(const std::string& from, const std::string& to) {
  return result(copyItem(real(from), real(to)),
                quoted(path::lastComponent(from)) + " couldn’t be copied to " + quoted(to));
}

std::optional<Error> SystemFiles::remove(const std::string& path) {
  return result(removeItem(real(path)), quoted(path::lastComponent(path)) + " couldn’t be removed");
}

std::optional<Error> SystemFiles::createFile(const std::string& path) {
  Descriptor file = openOrdinary(real(path), O_CREAT | O_TRUNC);
  return result(file ? file.close() : errno, sentence("file", path, "created", "in"));
}

std::optional<Error> SystemFiles::writeAtomically(const std::string& path, std::string_view bytes) {
  const std::string target = real(path);
  return result(target.empty() ? ENOENT : writeFileAtomically(target, bytes), sentence("file", path, "saved", "in"));
}

std::unique_ptr<FileHandle> SystemFiles::openForWriting(const std::string& path) {
  Descriptor file = openOrdinary(real(path), 0);
  if (!file) return nullptr;
  return std::make_unique<SystemFileHandle>(std::move(file), path);
}

int SystemFiles::openDatabase(const std::string& path, sqlite3** database) {
  *database = nullptr;
  if (options_.openDatabase) {
    if (const auto code = options_.openDatabase(path, database)) return *code;
  }
  const std::string target = real(path);
  // The empty name would be a private temporary database: an empty answer instead of a missing store.
  if (target.empty()) return SQLITE_CANTOPEN;
  return sqlite3_open(target.c_str(), database);
}

std::optional<std::string> SystemFiles::read(const std::string& path, std::size_t mostBytes) const {
  return readFile(real(path), mostBytes);
}

}  // namespace chatsum::platform::system
