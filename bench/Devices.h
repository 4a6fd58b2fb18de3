// Seeded devices and the program's reports of them, as the tables of the bench use them. No state.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "bench/Contenders.h"

namespace chatsum::bench {

/// A device and the home folder that its reports go to.
struct Bench {
  std::filesystem::path device, home;
};

/// Makes the device `name` below `work` with the options of `make_device`; a device that cannot be made ends the bench.
[[nodiscard]] Bench makeBench(const std::filesystem::path& work, const std::string& name,
                              const std::vector<std::string>& options);

/// `chatsum` with the places of the bench and more arguments.
[[nodiscard]] std::vector<std::string> chatsumCommand(const Bench& bench, const std::vector<std::string>& arguments);

/// The conversation with most messages, as `conversations --json` tells it.
[[nodiscard]] nlohmann::json largestConversation(const Bench& bench);

/// The report of a conversation in a format (text, csv, pdf).
[[nodiscard]] Contender report(const std::string& format, const Bench& bench, const std::string& guid);

}  // namespace chatsum::bench
