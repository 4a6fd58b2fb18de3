#include "hosts/device/report/FileDelivery.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "hosts/device/evidence/EvidenceManifest.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/report/PartialFile.h"
#include "hosts/device/stores/FileDescriptor.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kBlock = 1 << 18;

std::string folderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

StoreProblem describeExisting(const std::string& target) {
  return {say("There is already a file '{0}'; use --replace to write it anew.", target)};
}

int writeAll(const FileDescriptor& file, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(file.get(), bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return 0;
}

int copyContents(const std::string& from, const std::string& to) {
  const FileDescriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
  if (!source) return errno;
  const FileDescriptor target(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!target) return errno;
  std::string block(kBlock, '\0');
  for (;;) {
    const ssize_t got = ::read(source.get(), block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno;
    if (got == 0) return 0;
    if (const int error = writeAll(target, block.data(), static_cast<std::size_t>(got))) return error;
  }
}

}  // namespace

std::optional<StoreProblem> checkDelivery(const std::string& target, bool replace) {
  if (target.empty() || target.back() == '/') {
    return StoreProblem{say("--output needs the name of a file, not only of a folder.")};
  }
  struct stat status {};
  if (::stat(target.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) return StoreProblem{say("'{0}' is a folder; give the name of a file.", target)};
    if (!S_ISREG(status.st_mode)) {
      return StoreProblem{say("'{0}' is no ordinary file; give the name of another one.", target)};
    }
    return replace ? std::nullopt : std::optional(describeExisting(target));
  }
  const std::string folder = folderOf(target);
  if (::stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
    return StoreProblem{say("There is no folder '{0}' for the copy; make it first.", folder)};
  }
  return std::nullopt;
}

std::optional<StoreProblem> deliver(const std::string& from, const std::string& target, bool replace) {
  const auto failed = [&](int error) {
    return StoreProblem{
        say("The report is at '{0}', but no copy could be put at '{1}' ({2}).", from, target, std::strerror(error))};
  };
  PartialFile partial(folderOf(target), "");
  if (const int error = copyContents(from, partial.path())) return failed(error);
  const int error = partial.moveTo(target, replace);
  if (error == 0) {
    if (replace) removeEvidenceOf(target);
    return std::nullopt;
  }
  return error == EEXIST ? describeExisting(target) : failed(error);
}

}  // namespace chatsum::device
