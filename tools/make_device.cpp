// make_device: writes a made-up device of any size, for tests and benches by hand.
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/device/sample/SampleDevice.h"
#include "hosts/device/sample/SeededDevice.h"

namespace {

using chatsum::device::SeededDeviceOptions;

constexpr std::string_view kUsage =
    "Usage: make_device DIR [options]\n"
    "       make_device DIR --sample\n"
    "Writes a made-up device below DIR, which must not hold one yet.\n"
    "  --messages N        messages (default 1000)\n"
    "  --seed S            another seed, another device (default 1)\n"
    "  --conversations C   conversations, the first takes most messages (default 10)\n"
    "  --main-share P      share of the messages in the first conversation, 0 to 1 (default 0.7)\n"
    "  --group H           make the first conversation a group of H people\n"
    "  --contacts K        cards in the address book (default 20)\n"
    "  --attachments P     share of messages with attachments, 0 to 1 (default 0.02)\n"
    "  --body-only P       share of messages whose text stands only in the body, 0 to 1 (default 0)\n"
    "  --bodies            give every message a body beside its text\n"
    "  --out-of-order P    oldest share of the messages, its rows put between newer ones (default 0.05)\n"
    "  --generation G      ios6, ios9, ios10, ios11, ios14, ios17 or ios18 (default ios17)\n"
    "  --wal               leave all rows in the write-ahead log\n"
    "  --sample            the sample device that comes with Chatsum, with its pictures\n";

struct Request {
  std::string folder;
  bool sample = false;
  SeededDeviceOptions options;
};

template <typename Number>
bool parse(std::string_view text, Number least, Number most, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number >= least && number <= most;
}

// Answers false for an option that is unknown or has no or a wrong value.
bool readOption(std::string_view name, std::string_view value, SeededDeviceOptions& options) {
  constexpr std::int64_t kMost = 1'000'000'000;
  if (name == "--messages") return parse<std::int64_t>(value, 0, kMost, options.messages);
  if (name == "--seed") return parse<std::uint64_t>(value, 0, UINT64_MAX, options.seed);
  if (name == "--conversations") return parse<std::int64_t>(value, 1, 1'000'000, options.conversations);
  if (name == "--main-share") return parse(value, 0.0, 1.0, options.mainShare);
  if (name == "--group") return parse<std::int64_t>(value, 2, 1'000'000, options.groupHandles);
  if (name == "--contacts") return parse<std::int64_t>(value, 0, 5'000'000, options.contacts);
  if (name == "--attachments") return parse(value, 0.0, 1.0, options.attachmentShare);
  if (name == "--body-only") return parse(value, 0.0, 1.0, options.bodyOnlyShare);
  if (name == "--out-of-order") return parse(value, 0.0, 1.0, options.outOfOrderShare);
  if (name == "--generation") return chatsum::device::generationNamed(value, options.generation);
  return false;
}

std::optional<Request> readArguments(int count, char** arguments) {
  Request request;
  for (int index = 1; index < count; ++index) {
    const std::string_view argument = arguments[index];
    if (argument == "--sample") {
      request.sample = true;
    } else if (argument == "--wal") {
      request.options.placement = chatsum::device::Placement::wal;
    } else if (argument == "--bodies") {
      request.options.bodies = true;
    } else if (argument.starts_with("-")) {
      const std::string_view value = index + 1 < count ? arguments[++index] : "";
      if (!readOption(argument, value, request.options)) {
        std::cerr << "make_device: " << argument << " " << value << " is not understood.\n";
        return std::nullopt;
      }
    } else if (request.folder.empty()) {
      request.folder = argument;
    } else {
      std::cerr << "make_device: one folder only, please.\n";
      return std::nullopt;
    }
  }
  if (request.folder.empty()) {
    std::cerr << "make_device: the folder is missing.\n";
    return std::nullopt;
  }
  return request;
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 2 && (std::string_view(arguments[1]) == "--help" || std::string_view(arguments[1]) == "-h")) {
    std::cout << kUsage;
    return 0;
  }
  const std::optional<Request> request = readArguments(count, arguments);
  if (!request) {
    std::cerr << kUsage;
    return 2;
  }
  const auto failure = request->sample ? chatsum::device::writeSampleDevice(request->folder)
                                       : chatsum::device::writeSeededDevice(request->folder, request->options);
  if (failure) {
    std::cerr << *failure << "\n";
    return 1;
  }
  return 0;
}
