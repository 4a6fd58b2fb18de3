#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "bench/Devices.h"
#include "bench/Tables.h"

namespace chatsum::bench {
namespace {

namespace fs = std::filesystem;

std::string quoted(const std::string& text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? std::string("''") : std::string(1, c);
  return result + "'";
}

/// The statement the program reads a conversation with.
std::string messageStatement(const nlohmann::json& guids) {
  std::string filter;
  for (const auto& guid : guids) filter += (filter.empty() ? "guid=" : " OR guid=") + quoted(guid.get<std::string>());
  return "SELECT message_guid, text, date, is_from_me, id, cache_has_attachments, filename from (SELECT * FROM "
         "((SELECT "
         "m.ROWID as MESSAGE_ROWID, m.guid as message_guid, m.text, m.date, m.handle_id, m.is_from_me, "
         "m.cache_has_attachments FROM message m WHERE ROWID in (SELECT message_id FROM chat_message_join WHERE "
         "chat_id in "
         "(select ROWID FROM chat WHERE " +
         filter +
         ")) ORDER BY m.date ASC) LEFT JOIN handle h on handle_id=h.ROWID) "
         "LEFT JOIN message_attachment_join mj on MESSAGE_ROWID=mj.message_id) LEFT JOIN attachment a on "
         "a.ROWID=attachment_id";
}

void printRow(const Contender& contender, double rows, double rival) {
  const double seconds = wallSeconds(contender), peak = peakBytes(contender);
  fmt::print("{:<16} {:>9.4f} {:>9.4f}", contender.name, seconds, cpuSeconds(contender));
  if (contender.made.empty()) {
    fmt::print(" {:>12} {:>9.1f}\n", "", peak / 1e6);
    return;
  }
  const double size = madeBytes(contender);
  // What a record costs beside the text of the report itself.
  fmt::print(" {:>12.0f} {:>9.1f} {:>10.1f} {:>12.0f} {:>10.2f}\n", rows / seconds, peak / 1e6, size / 1e6,
             (peak - size) / rows, seconds / rival);
}

bool benchSize(const fs::path& work, long messages, int rounds) {
  const Bench bench = makeBench(work, "device", {"--messages", std::to_string(messages), "--seed", "1"});
  const auto conversation = largestConversation(bench);
  const std::string guid = conversation["guids"][0];
  const auto rows = conversation["messages"].get<double>();
  const fs::path store = bench.device / "var/mobile/Library/SMS/sms.db";

  std::vector<Contender> contenders;
  contenders.push_back({.name = "sqlite3 to CSV",
                        .command = {"sqlite3", "-readonly", "-csv", store, messageStatement(conversation["guids"])},
                        .outputFile = work / "sqlite3.csv",
                        .made = work / "sqlite3.csv"});
  contenders.push_back(report("text", bench, guid));
  contenders.push_back(report("csv", bench, guid));
  contenders.push_back({.name = "conversations", .command = chatsumCommand(bench, {"conversations"})});
  contenders.push_back({.name = "--version", .command = chatsumCommand(bench, {"--version"})});
  runInTurn(contenders, rounds);

  fmt::print("\n{:.0f} messages in the conversation\n", rows);
  fmt::print("{:<16} {:>9} {:>9} {:>12} {:>9} {:>10} {:>12} {:>10}\n", "", "wall s", "cpu s", "rows/s", "peak MB",
             "report MB", "bytes/record", "to sqlite3");
  for (const Contender& contender : contenders) {
    if (!contender.failed) printRow(contender, rows, wallSeconds(contenders[0]));
  }
  std::fflush(stdout);
  fs::remove_all(bench.device);
  return std::none_of(contenders.begin(), contenders.end(), [](const Contender& one) { return one.failed; });
}

/// What an address book of 50,000 numbers adds to a group of 500 people.
bool benchAddressBook(const fs::path& work, long messages, int rounds) {
  std::vector<Contender> contenders;
  std::vector<fs::path> devices;
  for (const char* contacts : {"0", "50000"}) {
    const Bench bench =
        makeBench(work, std::string("group") + contacts,
                  {"--messages", std::to_string(messages), "--seed", "2", "--group", "500", "--contacts", contacts});
    devices.push_back(bench.device);
    contenders.push_back(report("text", bench, largestConversation(bench)["guids"][0]));
    contenders.back().name = std::string(contacts) + " contacts";
  }
  runInTurn(contenders, rounds);
  fmt::print("\ngroup of 500 handles, {} messages on the device\n", messages);
  for (const Contender& contender : contenders)
    fmt::print("{:<16} {:>9.4f} s\n", contender.name, wallSeconds(contender));
  fmt::print("ratio {:.3f}\n", wallSeconds(contenders[1]) / wallSeconds(contenders[0]));
  std::fflush(stdout);
  for (const fs::path& device : devices) fs::remove_all(device);
  return !contenders[0].failed && !contenders[1].failed;
}

}  // namespace

bool linesTables(const fs::path& work, const std::vector<long>& sizes, int rounds) {
  bool allWorked = true;
  for (const long size : sizes) allWorked &= benchSize(work, size, rounds);
  for (const long size : {100'000L, 1'000'000L}) allWorked &= benchAddressBook(work, size, rounds);
  return allWorked;
}

}  // namespace chatsum::bench
