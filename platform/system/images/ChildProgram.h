// Runs another program inside limits, so that what it reads can neither harm us nor hold us up: little memory and time,
// no input, no files, no environment. Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace chatsum::platform::system {

/// Looks the program up in PATH, runs it and answers what it wrote to its standard output. None when it is not
/// installed, fails, takes more than the limits or writes more than `mostBytes`.
[[nodiscard]] std::optional<std::string> outputOf(const std::string& program, const std::vector<std::string>& arguments,
                                                  std::size_t mostBytes);

}  // namespace chatsum::platform::system
