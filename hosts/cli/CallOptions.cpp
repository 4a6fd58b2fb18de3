#include "hosts/cli/CallOptions.h"

#include <CLI/CLI.hpp>

#include "hosts/device/language/Say.h"

namespace chatsum::cli {

using device::say;

void addTimeOptions(CLI::App& command, TimeWords& words, const TimeHelp& help) {
  command.add_option("--since", words.since, help.since)->type_name("TIME");
  command.add_option("--until", words.until, help.until)->type_name("TIME");
}

std::optional<std::string> readTimes(const TimeWords& words, device::TimeRange& range) {
  const auto refusal = [](const char* option, const std::string& given) {
    return say(
        "{0}: '{1}' is no time; write 2024-03-31 or 2024-03-31T18:05, with an offset such as +02:00 if it is not local "
        "time.",
        option, given);
  };
  if (!words.since.empty() && !device::setSince(range, words.since)) return refusal("--since", words.since);
  if (!words.until.empty() && !device::setUntil(range, words.until)) return refusal("--until", words.until);
  return std::nullopt;
}

device::CallApp appOfWord(const std::string& word) {
  return word == device::serviceOf(device::CallApp::kFaceTime) ? device::CallApp::kFaceTime : device::CallApp::kPhone;
}

void addAppOption(CLI::App& command, std::optional<std::string>& word, const std::string& about) {
  command.add_option("--app", word, about)->check(CLI::IsMember({"phone", "facetime"}))->type_name("APP");
}

}  // namespace chatsum::cli
