// Writing a whole file in one step: the old contents or the new, never a part.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

namespace chatsum::platform::system {

/// What we make is its owner's alone: people's messages stand in it.
inline constexpr mode_t kPrivateFile = 0600, kPrivateFolder = 0700;

/// Writes a temporary file beside `path` (real path) and moves it into place. A new file gets the permissions given,
/// less those that the process's umask takes away; a replaced one keeps its own; a symbolic link at the path is
/// replaced, not followed. Answers 0 or errno; after a failure nothing new stands in the folder and an old file is
/// untouched. Any thread.
///
/// The data is not forced to the disk before the move: a report can be made again from its source, and waiting for the
/// disk would double the time of a large one.
[[nodiscard]] int writeFileAtomically(const std::string& path, std::string_view bytes, mode_t newMode = kPrivateFile);

}  // namespace chatsum::platform::system
