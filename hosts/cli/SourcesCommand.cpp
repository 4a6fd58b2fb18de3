#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "hosts/cli/DisplayText.h"
#include "hosts/cli/Invocation.h"
#include "hosts/cli/Json.h"
#include "hosts/device/report/TimeRange.h"
#include "hosts/device/session/SourceSearch.h"

namespace chatsum::cli {
namespace {

using Sources = std::vector<device::SourceFacts>;

struct Options {
  std::vector<std::string> folders;
  bool asJson = false;
};

Json textOrNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

void printJson(const Sources& sources, std::ostream& out) {
  JsonArrayWriter writer(out);
  for (const device::SourceFacts& source : sources) {
    const Json element = {{"path", source.path},
                          {"kind", device::wordOf(source.kind)},
                          {"encrypted", source.isEncrypted},
                          {"device", textOrNull(source.deviceName)},
                          {"date", jsonOf(source.date)}};
    if (!writer.append(element)) return;
  }
  writer.finish();
}

void printTable(const Sources& sources, std::ostream& out) {
  constexpr std::size_t kMostCells = 30, kDayLength = 10;
  std::vector<std::vector<std::string>> rows;
  for (const device::SourceFacts& source : sources) {
    const std::string name = source.deviceName.empty() ? "-" : shortened(source.deviceName, kMostCells);
    rows.push_back({device::said(device::wordOf(source.kind)), name,
                    source.date ? device::isoTime(*source.date).substr(0, kDayLength) : "-",
                    source.isEncrypted ? say("yes") : say("no"), source.path});
  }
  out << table({say("KIND"), say("DEVICE"), say("DATE"), say("ENCRYPTED"), say("PATH")}, rows);
}

int listSources(const Invocation& invocation, const Options& options) {
  const Console& console = invocation.console;
  std::vector<std::string> folders;
  for (const std::string& given : options.folders) {
    std::error_code error;
    if (!std::filesystem::is_directory(given, error)) {
      return console.fail(error && error != std::errc::no_such_file_or_directory
                              ? say("The folder '{0}' cannot be read ({1}).", given, error.message())
                              : say("There is no folder '{0}'; check the path.", given));
    }
    folders.push_back(given);
  }
  const device::FoundSources found =
      folders.empty() ? device::findSources(device::SearchRoots::ofThisMachine()) : device::findSourcesBelow(folders);
  if (options.asJson) {
    printJson(found.sources, console.out);
  } else if (!found.sources.empty()) {
    printTable(found.sources, console.out);
  }
  for (const std::string& sentence : found.notes) console.remark(sentence);
  if (found.sources.empty()) {
    console.note(say("No device, backup or Mac was found. Looked in:"));
    for (const std::string& place : found.places) console.note("  " + place);
    if (folders.empty()) console.note(say("Name other folders: 'chatsum sources DIR'."));
  }
  return kDone;
}

}  // namespace

void addSourcesCommand(CLI::App& program, Invocation& invocation) {
  CLI::App* command = program.add_subcommand(
      "sources", say("List devices, backups and Macs found in the usual places, or below folders"));
  const auto options = std::make_shared<Options>();
  command->add_option("DIR", options->folders, say("Folders to look below instead of the usual places"))->type_name("");
  command->add_flag("--json", options->asJson, say("Print a JSON array instead of a table"));
  command->callback([&invocation, options] {
    invocation.command = [&invocation, options] { return listSources(invocation, *options); };
  });
}

}  // namespace chatsum::cli
