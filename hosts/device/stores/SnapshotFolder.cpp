#include "hosts/device/stores/SnapshotFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

#include "hosts/device/language/Say.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kPrefix = "chatsum-";
constexpr std::size_t kRandomLetters = 6;
constexpr const char* kLockName = "lock";
constexpr int kDeepestFolder = 32;  // ours are flat; this only ends a walk through something strange
constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

// The entries of a folder that stays open itself.
OpenFolder listing(const FileDescriptor& folder) {
  const int descriptor = ::openat(folder.get(), ".", kFolderFlags);
  if (descriptor < 0) return nullptr;
  OpenFolder entries(::fdopendir(descriptor));
  if (!entries) ::close(descriptor);
  return entries;
}

// The folders that this process has, for removeAll().
class Registry {
 public:
  static Registry& shared() {
    static auto* registry = new Registry;  // never destroyed: folders may outlive other statics
    return *registry;
  }
  void add(const std::string& path) {
    const std::lock_guard guard(mutex_);
    paths_.push_back(path);
  }
  /// False when it was already taken out.
  bool takeOut(const std::string& path) {
    const std::lock_guard guard(mutex_);
    const auto found = std::find(paths_.begin(), paths_.end(), path);
    if (found == paths_.end()) return false;
    paths_.erase(found);
    return true;
  }
  std::vector<std::string> takeOutAll() {
    const std::lock_guard guard(mutex_);
    return std::exchange(paths_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> paths_;
};

bool isDotName(const char* name) { return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0; }

// Empties a folder. Symbolic links are removed, never followed: every step works on open folders.
void removeContents(const FileDescriptor& folder, int depth) {
  const OpenFolder entries = listing(folder);
  if (!entries || depth > kDeepestFolder) return;
  while (const dirent* entry = ::readdir(entries.get())) {
    if (isDotName(entry->d_name)) continue;
    if (::unlinkat(folder.get(), entry->d_name, 0) == 0) continue;
    const FileDescriptor inner(::openat(folder.get(), entry->d_name, kFolderFlags));
    if (!inner) continue;
    removeContents(inner, depth + 1);
    ::unlinkat(folder.get(), entry->d_name, AT_REMOVEDIR);
  }
}

void removeTree(const std::string& path) {
  if (const FileDescriptor folder(::open(path.c_str(), kFolderFlags)); folder) removeContents(folder, 0);
  ::rmdir(path.c_str());
}

FileDescriptor takeLock(const FileDescriptor& folder, int extraFlags) {
  FileDescriptor lock(::openat(folder.get(), kLockName, O_RDWR | O_NOFOLLOW | O_CLOEXEC | extraFlags, 0600));
  if (lock && ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) lock = FileDescriptor();
  return lock;
}

bool isFolderName(std::string_view name) {
  return name.size() == kPrefix.size() + kRandomLetters && name.substr(0, kPrefix.size()) == kPrefix;
}

bool removeOrphan(int parent, const char* name) {
  const FileDescriptor folder(::openat(parent, name, kFolderFlags));
  struct stat status {};
  if (!folder || ::fstat(folder.get(), &status) != 0 || status.st_uid != ::geteuid()) return false;
  FileDescriptor lock = takeLock(folder, 0);
  if (!lock) {
    // Without a lock file its owner may just be making it: only an empty one goes, and its owner makes another.
    return errno == ENOENT && ::unlinkat(parent, name, AT_REMOVEDIR) == 0;
  }
  removeContents(folder, 0);
  return ::unlinkat(parent, name, AT_REMOVEDIR) == 0;
}

}  // namespace

SnapshotFolder::SnapshotFolder(std::string path, FileDescriptor lock)
    : path_(std::move(path)), lock_(std::move(lock)) {}

SnapshotFolder::SnapshotFolder(SnapshotFolder&& other) noexcept
    : path_(std::exchange(other.path_, {})), lock_(std::move(other.lock_)) {}

SnapshotFolder& SnapshotFolder::operator=(SnapshotFolder&& other) noexcept {
  std::swap(path_, other.path_);
  std::swap(lock_, other.lock_);
  return *this;
}

SnapshotFolder::~SnapshotFolder() { remove(); }

void SnapshotFolder::remove() {
  if (!path_.empty() && Registry::shared().takeOut(path_)) removeTree(path_);
}

std::string SnapshotFolder::defaultParent() {
  const char* wanted = std::getenv("TMPDIR");
  struct stat status {};
  if (wanted && wanted[0] == '/' && ::stat(wanted, &status) == 0 && S_ISDIR(status.st_mode)) return wanted;
  return "/tmp";
}

StoreResult<SnapshotFolder> SnapshotFolder::create(const std::string& parent) {
  constexpr int kTries = 3;
  for (int attempt = 0; attempt < kTries; ++attempt) {
    std::string path = parent;
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    path.append("/").append(kPrefix).append(kRandomLetters, 'X');
    if (!::mkdtemp(path.data())) break;
    Registry::shared().add(path);
    const FileDescriptor folder(::open(path.c_str(), kFolderFlags));
    FileDescriptor lock = folder ? takeLock(folder, O_CREAT | O_EXCL) : FileDescriptor();
    struct stat status {};
    // Somebody cleaning up at this very moment may have taken the folder for an orphan; then make another.
    if (lock && ::fstat(lock.get(), &status) == 0 && status.st_nlink > 0) {
      return SnapshotFolder(std::move(path), std::move(lock));
    }
    if (Registry::shared().takeOut(path)) removeTree(path);
  }
  return StoreProblem{say("No private folder can be made in '{0}' ({1}); set TMPDIR to a folder that can be written.",
                          parent, std::strerror(errno))};
}

int SnapshotFolder::removeOrphans(const std::string& parent) {
  const FileDescriptor folder(::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder) return 0;
  const OpenFolder entries = listing(folder);
  if (!entries) return 0;
  std::vector<std::string> names;  // read first: removing while listing may skip entries
  while (const dirent* entry = ::readdir(entries.get())) {
    if (isFolderName(entry->d_name)) names.emplace_back(entry->d_name);
  }
  int removed = 0;
  for (const std::string& name : names) removed += removeOrphan(folder.get(), name.c_str()) ? 1 : 0;
  return removed;
}

void SnapshotFolder::removeAll() {
  for (const std::string& path : Registry::shared().takeOutAll()) removeTree(path);
}

}  // namespace chatsum::device
