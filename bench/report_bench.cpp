// Reports of a seeded device against the sqlite3 program that writes the same rows as CSV: whole processes, in turn,
// medians of several rounds on the same warm files. Prints one table per size.
//
//   chatsum_bench [--rounds N] [MESSAGES…]        default: 5 rounds of 10000, 100000 and 1000000 messages

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "bench/ChildProcess.h"

namespace {

using chatsum::bench::Run;
using chatsum::bench::runChild;
namespace fs = std::filesystem;

const std::string kProgram = CHATSUM_PROGRAM;
const std::string kMakeDevice = CHATSUM_MAKE_DEVICE;

std::string quoted(const std::string& text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? std::string("''") : std::string(1, c);
  return result + "'";
}

/// The statement the program reads a conversation with.
std::string messageStatement(const nlohmann::json& guids) {
  std::string filter;
  for (const auto& guid : guids) filter += (filter.empty() ? "guid=" : " OR guid=") + quoted(guid.get<std::string>());
  return "SELECT message_guid, text, date, is_from_me, id, cache_has_attachments, filename from (SELECT * FROM ((SELECT "
         "m.ROWID as MESSAGE_ROWID, m.guid as message_guid, m.text, m.date, m.handle_id, m.is_from_me, "
         "m.cache_has_attachments FROM message m WHERE ROWID in (SELECT message_id FROM chat_message_join WHERE chat_id in "
         "(select ROWID FROM chat WHERE " + filter + ")) ORDER BY m.date ASC) LEFT JOIN handle h on handle_id=h.ROWID) "
         "LEFT JOIN message_attachment_join mj on MESSAGE_ROWID=mj.message_id) LEFT JOIN attachment a on "
         "a.ROWID=attachment_id";
}

struct Contender {
  std::string name;
  std::vector<std::string> command;
  std::string outputFile;
  fs::path made;  // the file whose size is the report's
  std::vector<Run> runs = {};
};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

double medianOf(const Contender& contender, double (*figure)(const Run&)) {
  std::vector<double> values;
  for (const Run& run : contender.runs) values.push_back(figure(run));
  return median(values);
}

double wall(const Run& run) { return run.wallSeconds; }
double cpu(const Run& run) { return run.cpuSeconds; }
double peakBytes(const Run& run) { return static_cast<double>(run.peakKilobytes) * 1024; }

void runInTurn(std::vector<Contender>& contenders, int rounds) {
  for (int round = -1; round < rounds; ++round) {  // the first one only warms the files
    for (Contender& contender : contenders) {
      Run run = runChild(contender.command, contender.outputFile);
      if (run.exitCode != 0) {
        fmt::print(stderr, "{} failed with exit code {}\n", contender.name, run.exitCode);
        std::exit(1);
      }
      if (round >= 0) contender.runs.push_back(std::move(run));
    }
  }
}

/// The largest conversation of a device, as `conversations --json` tells it.
nlohmann::json largestConversation(const fs::path& device, const fs::path& home) {
  const Run run = runChild({kProgram, "--source", device, "--home", home, "conversations", "--json"}, "");
  const auto all = nlohmann::json::parse(run.output);
  return *std::max_element(all.begin(), all.end(), [](const auto& a, const auto& b) {
    return a["messages"].template get<long>() < b["messages"].template get<long>();
  });
}

fs::path makeDevice(const fs::path& work, const std::string& name, std::vector<std::string> options) {
  const fs::path device = work / name;
  std::vector<std::string> command = {kMakeDevice, device};
  command.insert(command.end(), options.begin(), options.end());
  if (runChild(command, "/dev/null").exitCode != 0) {
    fmt::print(stderr, "the device could not be made\n");
    std::exit(1);
  }
  return device;
}

Contender report(const std::string& format, const fs::path& device, const fs::path& home, const std::string& guid) {
  const std::string extension = format == "text" ? "txt" : format;
  return {"report " + format,
          {kProgram, "--source", device, "--home", home, "report", guid, "--format", format, "--name", "bench", "--replace"},
          "/dev/null",
          home / "Library/Preferences/Chatsum" / ("bench." + extension)};
}

void benchSize(const fs::path& work, long messages, int rounds) {
  const fs::path home = work / "home";
  const fs::path device = makeDevice(work, "device", {"--messages", std::to_string(messages), "--seed", "1"});
  const auto conversation = largestConversation(device, home);
  const std::string guid = conversation["guids"][0];
  const auto rows = conversation["messages"].get<double>();
  const fs::path store = device / "var/mobile/Library/SMS/sms.db";

  std::vector<Contender> contenders;
  contenders.push_back({"sqlite3 to CSV",
                        {"sqlite3", "-readonly", "-csv", store, messageStatement(conversation["guids"])},
                        work / "sqlite3.csv",
                        work / "sqlite3.csv"});
  contenders.push_back(report("text", device, home, guid));
  contenders.push_back(report("csv", device, home, guid));
  contenders.push_back({"conversations", {kProgram, "--source", device, "--home", home, "conversations"}, "/dev/null", {}});
  contenders.push_back({"--version", {kProgram, "--version"}, "/dev/null", {}});
  runInTurn(contenders, rounds);

  const double rival = medianOf(contenders[0], wall);
  fmt::print("\n{:.0f} messages in the conversation\n", rows);
  fmt::print("{:<16} {:>9} {:>9} {:>12} {:>9} {:>10} {:>12} {:>10}\n", "", "wall s", "cpu s", "rows/s", "peak MB", "report MB",
             "bytes/record", "to sqlite3");
  for (const Contender& contender : contenders) {
    const double seconds = medianOf(contender, wall);
    fmt::print("{:<16} {:>9.4f} {:>9.4f}", contender.name, seconds, medianOf(contender, cpu));
    if (contender.made.empty()) {
      fmt::print(" {:>12} {:>9.1f}\n", "", medianOf(contender, peakBytes) / 1e6);
      continue;
    }
    const auto size = static_cast<double>(fs::file_size(contender.made));
    // What a record costs beside the text of the report itself.
    const double perRecord = (medianOf(contender, peakBytes) - size) / rows;
    fmt::print(" {:>12.0f} {:>9.1f} {:>10.1f} {:>12.0f} {:>10.2f}\n", rows / seconds, medianOf(contender, peakBytes) / 1e6,
               size / 1e6, perRecord, seconds / rival);
  }
  fs::remove_all(device);
}

/// What an address book of 50,000 numbers adds to a group of 500 people.
void benchAddressBook(const fs::path& work, long messages, int rounds) {
  const fs::path home = work / "home";
  std::vector<Contender> contenders;
  std::vector<fs::path> devices;
  for (const char* contacts : {"0", "50000"}) {
    devices.push_back(makeDevice(work, std::string("group") + contacts,
                                 {"--messages", std::to_string(messages), "--seed", "2", "--group", "500", "--contacts", contacts}));
    const auto conversation = largestConversation(devices.back(), home);
    contenders.push_back(report("text", devices.back(), home, conversation["guids"][0]));
    contenders.back().name = std::string(contacts) + " contacts";
  }
  runInTurn(contenders, rounds);
  fmt::print("\ngroup of 500 handles, {} messages on the device\n", messages);
  for (const Contender& contender : contenders) fmt::print("{:<16} {:>9.4f} s\n", contender.name, medianOf(contender, wall));
  fmt::print("ratio {:.3f}\n", medianOf(contenders[1], wall) / medianOf(contenders[0], wall));
  for (const fs::path& device : devices) fs::remove_all(device);
}

}  // namespace

int main(int argc, char** argv) {
  int rounds = 5;
  std::vector<long> sizes;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--rounds" && i + 1 < argc) {
      rounds = std::max(1, std::atoi(argv[++i]));
    } else if (const long size = std::atol(word.c_str()); size > 0) {
      sizes.push_back(size);
    } else {
      fmt::print(stderr, "usage: chatsum_bench [--rounds N] [MESSAGES...]\n");
      return 2;
    }
  }
  if (sizes.empty()) sizes = {10'000, 100'000, 1'000'000};

  std::string name = (fs::temp_directory_path() / "chatsum-bench-XXXXXX").string();
  if (!mkdtemp(name.data())) return 1;
  for (const long size : sizes) {
    benchSize(name, size, rounds);
    std::fflush(stdout);
  }
  benchAddressBook(name, 100'000, rounds);
  benchAddressBook(name, 1'000'000, rounds);
  fs::remove_all(name);
  return 0;
}
