// Words of the command line about calls and times, read for more than one command. No state, any thread.
#pragma once

#include <optional>
#include <string>

#include "hosts/device/calls/CallList.h"
#include "hosts/device/report/TimeRange.h"

namespace CLI {
class App;
}

namespace chatsum::cli {

/// The stretch of time that a person asks for.
struct TimeWords {
  std::string since, until;
};

/// What the help says of --since and --until.
struct TimeHelp {
  std::string since, until;
};
/// Adds --since and --until.
void addTimeOptions(CLI::App& command, TimeWords& words, const TimeHelp& help);
/// Sets the range; the problem when the words mean no time.
[[nodiscard]] std::optional<std::string> readTimes(const TimeWords& words, device::TimeRange& range);

/// The app that a word of --app means; the words are checked before.
[[nodiscard]] device::CallApp appOfWord(const std::string& word);
/// Adds --app.
void addAppOption(CLI::App& command, std::optional<std::string>& word, const std::string& about);

}  // namespace chatsum::cli
