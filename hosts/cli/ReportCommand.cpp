#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/cli/Invocation.h"
#include "hosts/cli/Lookup.h"
#include "hosts/cli/Progress.h"
#include "hosts/device/report/ReportJob.h"
#include "hosts/device/settings/SettingWords.h"
#include "hosts/device/settings/SettingsFile.h"
#include "libchatsum/ChatsumSettings/ChatsumSettings.h"

namespace chatsum::cli {
namespace {

struct Options {
  std::string conversation;
  std::optional<std::string> format, sort;  ///< none: what the settings say
  std::string since, until;
  std::string keys, columns;
  device::ReportOptions report;
};

const std::map<std::string, device::ReportFormat>& formats() {
  static const std::map<std::string, device::ReportFormat> kFormats = {
      {"text", device::ReportFormat::kText}, {"csv", device::ReportFormat::kCsv}, {"pdf", device::ReportFormat::kPdf}};
  return kFormats;
}

/// What the settings say, or what holds without them when they cannot be read.
Record readSettings(const Invocation& invocation) {
  const auto home = invocation.homeDirectory();
  if (!home) return {};  // told when the report wants its place
  const auto file = device::SettingsFile::read(home.value());
  if (file) return file.value().values();
  invocation.console.note("Note: " + file.problem().sentence + " The report is made as without settings.");
  return {};
}

/// Takes the format and the order from the settings where the command line does not say them.
void completeFromSettings(const Invocation& invocation, Options& options) {
  if (options.format && options.sort) return;
  const Record values = readSettings(invocation);
  const auto wordOf = [&](std::string_view key, const Value& value) {
    return device::wordOfValue(*device::findSetting(key), value);
  };
  if (!options.sort) options.sort = wordOf(settings::kMessagesDateSortOrder, values[settings::kMessagesDateSortOrder]);
  if (options.format) return;
  options.format = wordOf(settings::kMessagesFileFormat, values[settings::kMessagesFileFormat]);
  if (formats().contains(*options.format)) return;
  invocation.console.note("Note: The settings name a format that does not exist (" + *options.format +
                          "); the report is a text.");
  options.format = wordOf(settings::kMessagesFileFormat, Value());
}

/// Fills in what the words of the command line mean; the problem when they mean nothing.
std::optional<std::string> readOptions(Options& options) {
  device::ReportOptions& report = options.report;
  report.layout.format = formats().at(*options.format);
  report.reading.newestFirst = options.sort == "desc";
  const char* const timeHint =
      "' is no time; write 2024-03-31 or 2024-03-31T18:05, with an offset such as +02:00 if it "
      "is not local time.";
  if (!options.since.empty() && !device::setSince(report.reading.range, options.since)) {
    return "--since: '" + options.since + timeHint;
  }
  if (!options.until.empty() && !device::setUntil(report.reading.range, options.until)) {
    return "--until: '" + options.until + timeHint;
  }
  if (!options.keys.empty()) report.layout.keys = device::splitList(options.keys);
  if (!options.columns.empty()) report.layout.columns = device::splitList(options.columns);
  if (auto problem = device::checkReportOptions(report)) return problem->sentence;
  return std::nullopt;
}

int makeReport(const Invocation& invocation, Options& options) {
  const Console& console = invocation.console;
  completeFromSettings(invocation, options);
  if (auto problem = readOptions(options)) return console.refuse(*problem, "report");
  if (!invocation.requireSource("report")) return kWrongUsage;
  const auto session = invocation.openSession();
  if (!session) return console.fail(session.problem().sentence);
  const auto conversation = findConversation(*session.value(), options.conversation, console);
  if (!conversation) return kFailed;

  Progress progress(console);
  if (progress.isShown()) {
    options.report.reading.progress = [&](std::uint64_t done, std::uint64_t total) {
      progress.show("Reading", done, total);
    };
    options.report.writing = [&] { progress.show("Writing ..."); };
    options.report.drawn = [&](std::uint64_t done, std::uint64_t total) { progress.show("Writing", done, total); };
  }
  const auto made = device::makeReport(*session.value(), *conversation, options.report);
  progress.clear();
  if (!made) return console.fail(made.problem().sentence);
  console.out << made.value().path << "\n" << std::flush;
  for (const std::string& note : made.value().notes) console.note("Note: " + note);
  if (const std::string problem = session.value()->contactsProblem(); !problem.empty())
    console.note("Note: " + problem);
  console.note(made.value().balance.sentence());
  return kDone;
}

}  // namespace

void addReportCommand(CLI::App& program, Invocation& invocation) {
  CLI::App* command = program.add_subcommand("report", "Write a report of a conversation and print its full path");
  const auto options = std::make_shared<Options>();
  device::ReportOptions& report = options->report;
  command
      ->add_option("CONVERSATION", options->conversation,
                   "Chat GUID, chat identifier, or the conversation's whole name")
      ->required()
      ->type_name("");
  command->add_option("--format", options->format, "text, csv or pdf (default: as set, else text)")
      ->check(CLI::IsMember({"text", "csv", "pdf"}))
      ->type_name("FORMAT");
  command->add_option("--sort", options->sort, "asc, the oldest first, or desc (default: as set, else asc)")
      ->check(CLI::IsMember({"asc", "desc"}))
      ->type_name("ORDER");
  command->add_option("--name", report.name, "Name of the report file (default: the conversation's name)")
      ->type_name("NAME");
  command->add_flag("--replace", report.replace, "Write anew what is already there");
  command->add_option("--since", options->since, "Leave out what was written before this time (ISO 8601)")
      ->type_name("TIME");
  command->add_option("--until", options->until, "Leave out what was written after this time; a day counts to its end")
      ->type_name("TIME");
  command->add_option("--exclude", report.reading.excluded, "Leave out the message with this GUID; may be repeated")
      ->type_name("GUID")
      ->allow_extra_args(false);
  command->add_option("--keys", options->keys, "What each row shows, separated by commas (default: Name,Text,Date)")
      ->type_name("KEYS");
  command->add_option("--line-format", report.layout.lineFormat, "A row's text, with %@ for each key")
      ->type_name("FORMAT");
  command->add_option("--columns", options->columns, "Titles of the columns, separated by commas (default: the keys)")
      ->type_name("TITLES");
  command->add_option("--output", report.output, "Put a copy of the report there")->type_name("FILE");
  command->callback([&invocation, options] {
    invocation.command = [&invocation, options] { return makeReport(invocation, *options); };
  });
}

}  // namespace chatsum::cli
