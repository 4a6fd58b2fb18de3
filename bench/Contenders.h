// Programs that do the same work, run in turn and timed as whole processes. No state.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "bench/ChildProcess.h"

namespace chatsum::bench {

struct Contender {
  std::string name;
  std::vector<std::string> command;
  std::string outputFile = "/dev/null";  ///< where its standard output goes
  std::filesystem::path made = {};       ///< the file it writes; empty when its size means nothing
  std::vector<Run> runs = {};
  bool failed = false;
};

/// Runs every contender once to warm the files and then `rounds` times, in turn. One that fails is told on standard
/// error and runs no more.
void runInTurn(std::vector<Contender>& contenders, int rounds);

// Medians over the runs of a contender that did not fail.
[[nodiscard]] double wallSeconds(const Contender& contender);
[[nodiscard]] double cpuSeconds(const Contender& contender);
/// Of its largest process, when it is made of several.
[[nodiscard]] double peakBytes(const Contender& contender);
[[nodiscard]] double madeBytes(const Contender& contender);

}  // namespace chatsum::bench
