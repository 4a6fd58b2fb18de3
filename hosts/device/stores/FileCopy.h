// Copies one file as cheaply as the file system can. No state, any thread.
#pragma once

#include <string>

namespace chatsum::device {

/// Copies `from`, an ordinary file, to `to`, which must not exist and becomes private (0600): sharing its blocks where
/// the file system can, else inside the kernel, else by reading and writing. Answers 0 or an errno.
[[nodiscard]] int copyFile(const std::string& from, const std::string& to);

}  // namespace chatsum::device
