#include "hosts/cli/CallOptions.h"

#include <CLI/CLI.hpp>

namespace chatsum::cli {

void addTimeOptions(CLI::App& command, TimeWords& words, const std::string& what) {
  command.add_option("--since", words.since, "Leave out what " + what + " before this time (ISO 8601)")
      ->type_name("TIME");
  command.add_option("--until", words.until, "Leave out what " + what + " after this time; a day counts to its end")
      ->type_name("TIME");
}

std::optional<std::string> readTimes(const TimeWords& words, device::TimeRange& range) {
  const char* const hint =
      "' is no time; write 2024-03-31 or 2024-03-31T18:05, with an offset such as +02:00 if it "
      "is not local time.";
  if (!words.since.empty() && !device::setSince(range, words.since)) return "--since: '" + words.since + hint;
  if (!words.until.empty() && !device::setUntil(range, words.until)) return "--until: '" + words.until + hint;
  return std::nullopt;
}

device::CallApp appOfWord(const std::string& word) {
  return word == device::serviceOf(device::CallApp::kFaceTime) ? device::CallApp::kFaceTime : device::CallApp::kPhone;
}

void addAppOption(CLI::App& command, std::optional<std::string>& word, const std::string& about) {
  command.add_option("--app", word, about)->check(CLI::IsMember({"phone", "facetime"}))->type_name("APP");
}

}  // namespace chatsum::cli
