// Writing a whole file in one step: the old contents or the new, never a part.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::platform::system {

/// Writes a temporary file beside `path` (real path) and moves it into place. A new file gets the process's default
/// permissions, a replaced one keeps its own; a symbolic link at the path is replaced, not followed. Answers 0 or
/// errno; after a failure nothing new stands in the folder and an old file is untouched. Any thread.
///
/// The data is not forced to the disk before the move: a report can be made again from its source, and waiting for the
/// disk would double the time of a large one.
[[nodiscard]] int writeFileAtomically(const std::string& path, std::string_view bytes);

}  // namespace chatsum::platform::system
