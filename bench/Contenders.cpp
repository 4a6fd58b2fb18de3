#include "bench/Contenders.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

namespace chatsum::bench {
namespace {

double median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

template <typename Figure>
double medianOf(const Contender& contender, Figure figure) {
  std::vector<double> values;
  for (const Run& run : contender.runs) values.push_back(figure(run));
  return median(std::move(values));
}

}  // namespace

void runInTurn(std::vector<Contender>& contenders, int rounds) {
  for (int round = -1; round < rounds; ++round) {  // the first one only warms the files
    for (Contender& contender : contenders) {
      if (contender.failed) continue;
      Run run = runChild(contender.command, contender.outputFile);
      if (run.exitCode != 0) {
        fmt::print(stderr, "{} failed with exit code {}\n", contender.name, run.exitCode);
        contender.failed = true;
      } else if (round >= 0) {
        contender.runs.push_back(std::move(run));
      }
    }
  }
}

double wallSeconds(const Contender& contender) {
  return medianOf(contender, [](const Run& run) { return run.wallSeconds; });
}

double cpuSeconds(const Contender& contender) {
  return medianOf(contender, [](const Run& run) { return run.cpuSeconds; });
}

double peakBytes(const Contender& contender) {
  return medianOf(contender, [](const Run& run) { return static_cast<double>(run.peakKilobytes) * 1024; });
}

double madeBytes(const Contender& contender) {
  std::error_code problem;
  const auto size = std::filesystem::file_size(contender.made, problem);
  return problem ? 0 : static_cast<double>(size);
}

}  // namespace chatsum::bench
