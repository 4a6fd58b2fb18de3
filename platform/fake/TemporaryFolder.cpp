#include "platform/fake/TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace chatsum::platform::fake {
namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (fs::canonical(fs::temp_directory_path()) / "chatsum-test-XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::system_error(errno, std::generic_category(), pattern);
  path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  // A test may have taken rights away; give them back so that nothing is left behind.
  for (fs::recursive_directory_iterator at(path_, error), end; !error && at != end; at.increment(error)) {
    std::error_code ignored;
    if (at->is_directory(ignored) && !at->is_symlink(ignored)) {
      fs::permissions(at->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
  fs::remove_all(path_, error);
}

}  // namespace chatsum::platform::fake
