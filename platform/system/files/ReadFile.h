// Reading a whole small file. Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace chatsum::platform::system {

/// The bytes of the file at a real path. None (errno says why) when it cannot be read, is not a plain file, or is
/// longer than `mostBytes`, which is EFBIG.
[[nodiscard]] std::optional<std::string> readFile(const std::string& path, std::size_t mostBytes);

}  // namespace chatsum::platform::system
