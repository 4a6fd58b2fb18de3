// make_backup: makes a backup as Finder and iTunes do of a device folder, for tests and benches by hand.
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/BackupWriter.h"

namespace {

constexpr std::string_view kUsage =
    "Usage: make_backup DEVICE BACKUP [options]\n"
    "Makes a backup of the device folder DEVICE (as make_device writes it) in BACKUP, which must not be there yet.\n"
    "  --encrypted PASSWORD  encrypt it; a made-up one, because others can see arguments\n"
    "  --rounds N            rounds of SHA-256 on the password (default 10000; devices take ten million)\n"
    "  --flat                lay it out as iOS 9 and earlier did\n"
    "  --xml                 write the property lists as XML\n";

struct Request {
  std::vector<std::string> folders;
  chatsum::test::BackupOptions options;
};

std::optional<Request> readArguments(int count, char** arguments) {
  Request request;
  request.options.iterations = request.options.firstIterations = 10'000;
  for (int index = 1; index < count; ++index) {
    const std::string_view argument = arguments[index];
    const bool hasValue = index + 1 < count;
    if (argument == "--flat") {
      request.options.isFlat = true;
    } else if (argument == "--xml") {
      request.options.isXml = true;
    } else if (argument == "--encrypted" && hasValue) {
      request.options.password = arguments[++index];
    } else if (argument == "--rounds" && hasValue) {
      const unsigned long rounds = std::strtoul(arguments[++index], nullptr, 10);
      if (rounds < 1 || rounds > 100'000'000) return std::nullopt;
      request.options.firstIterations = static_cast<std::uint32_t>(rounds);
    } else if (argument.starts_with("-")) {
      return std::nullopt;
    } else {
      request.folders.emplace_back(argument);
    }
  }
  if (request.folders.size() != 2) return std::nullopt;
  return request;
}

}  // namespace

int main(int count, char** arguments) {
  const std::optional<Request> request = readArguments(count, arguments);
  if (!request) {
    std::cerr << kUsage;
    return 2;
  }
  if (std::filesystem::exists(request->folders[1])) {
    std::cerr << "make_backup: '" << request->folders[1] << "' is there already.\n";
    return 1;
  }
  if (const auto problem = chatsum::test::writeBackup(request->folders[0], request->folders[1], request->options)) {
    std::cerr << "make_backup: " << *problem << "\n";
    return 1;
  }
  return 0;
}
