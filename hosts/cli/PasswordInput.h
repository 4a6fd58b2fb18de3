// Passwords from where they may come from: a file, a descriptor, a terminal that does not show them. Never from the
// arguments. One thread, but for `restoreTerminal`.
#pragma once

#include <optional>
#include <string>

#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::cli {

/// The first line of a file, UTF-8, without its line break. "-" is standard input. The problem when the file cannot be
/// read, is empty, or holds more than a password.
[[nodiscard]] device::StoreResult<std::string> passwordOfFile(const std::string& path);
/// The same of what can be read from an open descriptor.
[[nodiscard]] device::StoreResult<std::string> passwordOfDescriptor(int descriptor);

/// Writes the question to the terminal and reads one line of it, unseen. None when nobody answers (end of input).
[[nodiscard]] std::optional<std::string> passwordOfTerminal(int terminal, const std::string& question);

/// Makes a terminal show what is typed again, for ends that run no destructors. Any thread.
void restoreTerminal();

}  // namespace chatsum::cli
