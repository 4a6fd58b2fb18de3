#include "platform/system/files/UnfinishedFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string_view>
#include <vector>

namespace chatsum::platform::system {
namespace {

constexpr std::string_view kPrefix = ".chatsum-";
constexpr std::size_t kDigits = 16;

bool isUnfinishedName(std::string_view name) {
  if (!name.starts_with(kPrefix)) return false;
  name.remove_prefix(kPrefix.size());
  if (name.size() < kDigits || name.find_first_not_of("0123456789abcdef") < kDigits) return false;
  const std::string_view rest = name.substr(kDigits);
  return rest.empty() || rest == ".txt" || rest == ".csv" || rest == ".pdf";
}

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

Descriptor openFolder(const std::string& path) {
  return Descriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace

std::string unfinishedName() {
  std::uint64_t random = 0;
  if (getrandom(&random, sizeof random, 0) != static_cast<ssize_t>(sizeof random)) return "";
  std::array<char, kDigits + 1> digits{};
  std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(random));
  return std::string(kPrefix) + digits.data();
}

FolderInUse::FolderInUse(const std::string& folder) : folder_(openFolder(folder)) {
  while (folder_ && flock(folder_.get(), LOCK_SH) != 0 && errno == EINTR) {
  }
}

void removeUnfinished(const std::string& folder) {
  const Descriptor alone = openFolder(folder);
  if (!alone || flock(alone.get(), LOCK_EX | LOCK_NB) != 0) return;
  const std::unique_ptr<DIR, CloseFolder> entries(opendir(folder.c_str()));
  if (!entries) return;
  std::vector<std::string> names;  // read first: removing while listing may skip entries
  while (const dirent* entry = readdir(entries.get())) {
    if (isUnfinishedName(entry->d_name)) names.emplace_back(entry->d_name);
  }
  for (const std::string& name : names) {
    struct stat status {};
    const bool isOurs = fstatat(alone.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
                        S_ISREG(status.st_mode) && status.st_uid == geteuid();
    if (isOurs) unlinkat(alone.get(), name.c_str(), 0);
  }
}

}  // namespace chatsum::platform::system
