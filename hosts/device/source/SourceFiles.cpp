#include "hosts/device/source/SourceFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "hosts/device/language/Say.h"
#include "hosts/device/stores/FileDescriptor.h"

namespace chatsum::device {
namespace {

bool isRefusal(int error) { return error == EACCES || error == EPERM; }

}  // namespace

StoreResult<std::optional<StoreLocation>> locateStore(const SourceFolder& folder,
                                                      const std::vector<std::string>& places) {
  for (const std::string& place : places) {
    if (const auto file = folder.resolve(place)) {
      if (auto problem = checkReadable(*file)) return *problem;
      return std::optional<StoreLocation>(locationOf(*file));
    }
    struct stat status {};
    const std::string path = folder.path() + "/" + place;
    if (::lstat(path.c_str(), &status) != 0 && isRefusal(errno)) return describeUnreadable(path, errno);
  }
  for (const std::string& place : places) {
    if (!folder.resolve(place + "-wal")) continue;
    return StoreProblem{say(
        "'{0}' holds only '{1}-wal': the store {2} itself is missing beside it; copy both from where they come from.",
        folder.path(), place, place.substr(place.rfind('/') + 1))};
  }
  return std::optional<StoreLocation>();
}

std::vector<SourceFile> filesOfStore(const std::string& folder, const std::string& main) {
  std::vector<SourceFile> files;
  for (const char* const suffix : {"", "-wal", "-shm", "-journal"}) {
    const std::string path = main + suffix;
    if (fileState(path)) files.push_back({nameBelow(folder, path), path});
  }
  return files;
}

std::vector<SourceFile> absentOfStore(const SourceFolder& folder, const std::vector<std::string>& places) {
  std::vector<SourceFile> files;
  for (const std::string& place : places) {
    const auto main = folder.resolve(place);
    if (!main) {
      files.push_back({place, folder.path() == "/" ? "/" + place : folder.path() + "/" + place});
      continue;
    }
    for (const char* const suffix : {"-wal", "-shm", "-journal"}) {
      const std::string path = *main + suffix;
      if (!fileState(path)) files.push_back({nameBelow(folder.path(), path), path});
    }
    break;
  }
  return files;
}

std::string nameBelow(std::string_view folder, std::string_view path) {
  std::string_view name = path;
  if (!name.starts_with(folder)) return std::string(path);
  name.remove_prefix(folder.size());
  if (folder.ends_with('/')) return std::string(name);
  return std::string(name.starts_with('/') ? name.substr(1) : path);
}

std::optional<StoreProblem> checkReadable(const std::string& path) {
  // Never waits, even if somebody put a pipe there.
  if (const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)); file) return std::nullopt;
  const int error = errno;
  if (!isRefusal(error)) return std::nullopt;  // whoever reads it says why
  return describeUnreadable(path, error);
}

StoreProblem describeUnreadable(const std::string& path, int error) {
  if (error == EPERM) {
    return {
        say("'{0}' may not be read ({1}); on a Mac, give the program that runs this Full Disk Access (System "
            "Settings, Privacy & Security), or copy the files elsewhere and give the copy.",
            path, std::strerror(error))};
  }
  return {say("'{0}' may not be read ({1}); change its permissions or run as a user who may read it.", path,
              std::strerror(error))};
}

std::string listed(const std::vector<std::string>& texts) {
  std::string list;
  for (const std::string& text : texts) list.append(list.empty() ? "" : ", ").append(text);
  return list;
}

}  // namespace chatsum::device
