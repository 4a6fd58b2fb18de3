#include "platform/system/bundle/SharedFolder.h"

#include <filesystem>
#include <system_error>

namespace chatsum::platform::system {

std::string sharedFolder() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string() : (program.parent_path().parent_path() / "share").string();
}

}  // namespace chatsum::platform::system
