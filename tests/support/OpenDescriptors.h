// Which files the test's process has open. Linux: reads /proc/self/fd.
#pragma once

#include <cstddef>
#include <filesystem>
#include <system_error>

namespace chatsum::tests {

/// How many descriptors of this process stand on the file, whatever they are open for.
[[nodiscard]] inline std::size_t openDescriptors(const std::filesystem::path& file) {
  const std::filesystem::path wanted = std::filesystem::weakly_canonical(file);
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;  // the listing's own descriptor ends with it
    if (std::filesystem::read_symlink(entry.path(), gone) == wanted) ++count;
  }
  return count;
}

}  // namespace chatsum::tests
