#include "bench/Devices.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace chatsum::bench {
namespace {

namespace fs = std::filesystem;

const std::string kProgram = CHATSUM_PROGRAM;
const std::string kMakeDevice = CHATSUM_MAKE_DEVICE;

}  // namespace

Bench makeBench(const fs::path& work, const std::string& name, const std::vector<std::string>& options) {
  const Bench bench{work / name, work / "home"};
  std::vector<std::string> command = {kMakeDevice, bench.device};
  command.insert(command.end(), options.begin(), options.end());
  if (runChild(command, "/dev/null").exitCode != 0) {
    fmt::print(stderr, "the device could not be made\n");
    std::exit(1);
  }
  return bench;
}

std::vector<std::string> chatsumCommand(const Bench& bench, const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {kProgram, "--source", bench.device, "--home", bench.home};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return command;
}

nlohmann::json largestConversation(const Bench& bench) {
  const Run run = runChild(chatsumCommand(bench, {"conversations", "--json"}), "");
  const auto all = nlohmann::json::parse(run.output);
  return *std::max_element(all.begin(), all.end(), [](const auto& a, const auto& b) {
    return a["messages"].template get<long>() < b["messages"].template get<long>();
  });
}

Contender report(const std::string& format, const Bench& bench, const std::string& guid) {
  const std::string extension = format == "text" ? "txt" : format;
  return {.name = "report " + format,
          .command = chatsumCommand(bench, {"report", guid, "--format", format, "--name", "bench", "--replace"}),
          .made = bench.home / "Library/Preferences/Chatsum" / ("bench." + extension)};
}

}  // namespace chatsum::bench
