// Making folders. Real paths, any thread.
#pragma once

#include <string>

namespace chatsum::platform::system {

/// Makes a folder and any missing parents, private to their owner unless the process's umask is stricter still; folders
/// that are there stay as they are. Answers 0, also for an existing folder, or errno.
[[nodiscard]] int makeFolder(const std::string& path);

}  // namespace chatsum::platform::system
