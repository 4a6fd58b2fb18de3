// Runs a program as a child and tells what the operating system counted for it.
#pragma once

#include <string>
#include <vector>

namespace chatsum::bench {

struct Run {
  double wallSeconds = 0;
  double cpuSeconds = 0;
  long peakKilobytes = 0;
  int exitCode = 0;
  std::string output;  ///< what it wrote to standard output, when that was kept
};

/// Starts the program with its arguments (the first is the path), waits, and answers the figures of that child alone.
/// Standard output goes to `outputFile`, or is kept when that is empty; standard error is dropped.
[[nodiscard]] Run runChild(const std::vector<std::string>& command, const std::string& outputFile);

}  // namespace chatsum::bench
