#include <CLI/CLI.hpp>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/cli/CallOptions.h"
#include "hosts/cli/Invocation.h"
#include "hosts/cli/Lookup.h"
#include "hosts/cli/Progress.h"
#include "hosts/cli/ReportEvidence.h"
#include "hosts/device/calls/CallReport.h"
#include "hosts/device/report/ReportJob.h"
#include "hosts/device/settings/SettingWords.h"
#include "hosts/device/settings/SettingsFile.h"
#include "hosts/device/words/Orphans.h"
#include "libchatsum/ChatsumSettings/ChatsumSettings.h"
#include "platform/system/translations/Languages.h"

namespace chatsum::cli {
namespace {

constexpr const char* kCommand = "report";

struct Options {
  std::optional<std::string> conversation;
  std::optional<std::string> app;           ///< instead of a conversation
  std::optional<std::string> format, sort;  ///< none: what the settings say
  bool wantsEvidence = false;
  bool isPlain = false;
  TimeWords times;
  std::string keys, columns;
  device::WritingOptions writing;
  device::ReadingOptions reading;  ///< of a conversation
  device::CallListOptions calls;   ///< of an app
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
  invocation.console.remark(say("{0} The report is made as without settings.", file.problem().sentence));
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
  invocation.console.remark(
      say("The settings name a format that does not exist ({0}); the report is a csv.", *options.format));
  options.format = wordOf(settings::kMessagesFileFormat, Value());
}

/// Options that go with one kind of report only, given with the other; none when all is well.
std::optional<std::string> refusalOf(const Options& options) {
  if (options.app && options.conversation) {
    return say("A report is of a conversation or, with --app, of calls; give one of the two.");
  }
  if (!options.app && !options.conversation && !options.reading.orphaned) {
    return say("Say what the report is of: CONVERSATION, or --app phone or --app facetime for calls.");
  }
  if (options.app && !options.reading.excluded.empty())
    return say("--exclude leaves out messages; calls have no GUIDs.");
  if (options.app && (options.isPlain || options.reading.deleted || options.reading.orphaned)) {
    return say("--plain, --deleted and --orphaned are for messages.");
  }
  if (options.isPlain && (options.reading.deleted || options.reading.orphaned)) {
    return say("--deleted and --orphaned need messages in words; leave --plain out.");
  }
  if (!options.app && options.calls.person) return say("--with is for reports of calls, so it needs --app.");
  return std::nullopt;
}

device::ReportOptions conversationReport(const Options& options) { return {options.writing, options.reading}; }

device::CallReportOptions callReport(const Options& options) {
  return {options.writing, appOfWord(*options.app), options.calls};
}

/// Fills in what the words of the command line mean; the problem when they mean nothing.
std::optional<std::string> readOptions(const Invocation& invocation, Options& options) {
  options.writing.layout.format = formats().at(*options.format);
  options.reading.newestFirst = options.calls.newestFirst = options.sort == "desc";
  if (auto problem = readTimes(options.times, options.reading.range)) return problem;
  options.calls.range = options.reading.range;
  options.calls.region = invocation.region;
  if (!options.keys.empty()) options.writing.layout.keys = device::splitList(options.keys);
  if (!options.columns.empty()) options.writing.layout.columns = device::splitList(options.columns);
  options.writing.listsAttachments = options.wantsEvidence;
  const auto problem = options.app ? device::checkCallReportOptions(callReport(options))
                                   : device::checkReportOptions(conversationReport(options));
  return problem ? std::optional(problem->sentence) : std::nullopt;
}

/// Tells of a report that was made.
void tell(const Invocation& invocation, const device::DeviceSession& session, const std::string& path,
          const std::vector<std::string>& notes, const std::string& balance) {
  const Console& console = invocation.console;
  console.result(path);
  for (const std::string& note : notes) console.remark(note);
  if (const std::string problem = session.contactsProblem(); !problem.empty()) console.remark(problem);
  console.note(balance);
}

/// The options that decide what stands in a report, for its evidence.
device::EvidenceJson evidentOptions(const Invocation& invocation, const Options& options) {
  device::EvidenceJson told = {{"format", *options.format}, {"sort", *options.sort}};
  const auto add = [&](const char* key, const std::string& value) {
    if (!value.empty()) told[key] = value;
  };
  add("app", options.app.value_or(""));
  add("since", options.times.since);
  add("until", options.times.until);
  add("with", options.calls.person.value_or(""));
  add("keys", options.keys);
  add("columns", options.columns);
  add("lineFormat", options.writing.layout.lineFormat.value_or(""));
  add("owner", invocation.owner.value_or(""));
  add("region", invocation.region);
  for (const char* variable : {"LANG", "LC_TIME", "LC_ALL"}) {  // the last one that is set decides
    if (const char* locale = std::getenv(variable)) add("locale", locale);
  }
  if (const auto languages = platform::system::languagesFromEnvironment(); !languages.empty()) {
    told["languages"] = languages;  // of the words that are ours
  }
  if (!options.reading.excluded.empty()) told["excluded"] = options.reading.excluded;
  for (const auto& [key, isSet] : {std::pair{"plain", options.isPlain},
                                   {"deleted", options.reading.deleted},
                                   {"orphaned", options.reading.orphaned}}) {
    if (isSet) told[key] = true;
  }
  return told;
}

/// The evidence states the very bytes that the report was made of.
void noteReading(const Options& options, device::DeviceSession::Options& wanted) {
  if (options.wantsEvidence) wanted.access.digests = std::make_shared<device::ReadDigests>();
}

int reportConversation(const Invocation& invocation, const Options& options, Progress& progress) {
  const Console& console = invocation.console;
  const auto session = invocation.openSession([&](device::DeviceSession::Options& wanted) {
    wanted.plain = options.isPlain;
    noteReading(options, wanted);
  });
  if (!session) return console.fail(session.problem().sentence);
  const auto conversation = options.conversation ? findConversation(*session.value(), *options.conversation, console)
                                                 : std::optional(device::conversationOfOrphans());
  if (!conversation) return kFailed;
  const auto made = device::makeReport(*session.value(), *conversation, conversationReport(options));
  progress.clear();
  if (!made) return console.fail(made.problem().sentence);
  const device::MadeReport& report = made.value();
  tell(invocation, *session.value(), report.path, report.notes, report.balance.sentence());
  if (!options.wantsEvidence) return kDone;
  device::EvidenceJson told = evidentOptions(invocation, options);
  told["conversation"] = {{"name", conversation->name}, {"guids", conversation->guids}};
  return writeReportEvidence(invocation, *session.value(),
                             {.path = report.path,
                              .output = options.writing.output,
                              .attachments = report.attachments,
                              .stores = {device::SourceStore::kMessages, device::SourceStore::kAddressBook},
                              .options = std::move(told),
                              .counts = countsOf(report.balance)});
}

int reportCalls(const Invocation& invocation, const Options& options, Progress& progress) {
  const Console& console = invocation.console;
  const device::CallReportOptions report = callReport(options);
  const auto home = invocation.homeDirectory(report.app == device::CallApp::kPhone ? device::kPhoneApplication
                                                                                   : device::kFaceTimeApplication);
  if (!home) return console.fail(home.problem().sentence);
  const auto session = invocation.openSession([&](device::DeviceSession::Options& wanted) {
    wanted.needsMessages = false;
    wanted.home = home.value();
    noteReading(options, wanted);
  });
  if (!session) return console.fail(session.problem().sentence);
  const auto made = device::makeCallReport(*session.value(), report);
  progress.clear();
  if (!made) return console.fail(made.problem().sentence);
  tell(invocation, *session.value(), made.value().path, made.value().notes, made.value().balance.sentence());
  if (!options.wantsEvidence) return kDone;
  return writeReportEvidence(invocation, *session.value(),
                             {.path = made.value().path,
                              .output = options.writing.output,
                              .attachments = {},
                              .stores = {device::SourceStore::kCalls, device::SourceStore::kTemporaryCalls,
                                         device::SourceStore::kOldCalls, device::SourceStore::kAddressBook},
                              .options = evidentOptions(invocation, options),
                              .counts = countsOf(made.value().balance)});
}

int makeReport(const Invocation& invocation, Options& options) {
  const Console& console = invocation.console;
  if (const auto refusal = refusalOf(options)) return console.refuse(*refusal, kCommand);
  completeFromSettings(invocation, options);
  if (auto problem = readOptions(invocation, options)) return console.refuse(*problem, kCommand);
  if (!invocation.requireSource(kCommand)) return kWrongUsage;

  Progress progress(console);
  if (progress.isShown()) {
    options.reading.progress = [&](std::uint64_t done, std::uint64_t total) {
      progress.show(say("Reading"), done, total);
    };
    options.writing.writing = [&] { progress.show(say("Writing ...")); };
    options.writing.drawn = [&](std::uint64_t done, std::uint64_t total) {
      progress.show(say("Writing"), done, total);
    };
  }
  return options.app ? reportCalls(invocation, options, progress) : reportConversation(invocation, options, progress);
}

}  // namespace

void addReportCommand(CLI::App& program, Invocation& invocation) {
  CLI::App* command =
      program.add_subcommand(kCommand, say("Write a report of a conversation, or of calls, and print its full path"));
  const auto options = std::make_shared<Options>();
  device::WritingOptions& writing = options->writing;
  command
      ->add_option("CONVERSATION", options->conversation,
                   say("Chat GUID, chat identifier, or the conversation's whole name"))
      ->type_name("");
  addAppOption(*command, options->app, say("phone or facetime: a report of its calls instead"));
  command->add_option("--format", options->format, say("text, csv or pdf (default: as set, else csv)"))
      ->check(CLI::IsMember({"text", "csv", "pdf"}))
      ->type_name("FORMAT");
  command->add_option("--sort", options->sort, say("asc, the oldest first, or desc (default: as set, else asc)"))
      ->check(CLI::IsMember({"asc", "desc"}))
      ->type_name("ORDER");
  command
      ->add_option(
          "--name", writing.name,
          say("Name of the report file (default: the conversation's name, \"Phone calls\" or \"FaceTime calls\")"))
      ->type_name("NAME");
  command->add_flag("--replace", writing.replace, say("Write anew what is already there"));
  addTimeOptions(*command, options->times,
                 {say("Leave out what was written or began before this time (ISO 8601)"),
                  say("Leave out what was written or began after this time; a day counts to its end")});
  command
      ->add_option("--with", options->calls.person,
                   say("Of calls, only those with this person: a number or e-mail address, or the whole name"))
      ->type_name("WHO");
  command
      ->add_option("--exclude", options->reading.excluded, say("Leave out the message with this GUID; may be repeated"))
      ->type_name("GUID")
      ->allow_extra_args(false);
  command
      ->add_option(
          "--keys", options->keys,
          say("What each row shows, separated by commas (default: Name,Text,Date); also Address and Service, of "
              "calls Duration, Direction, Status and Medium"))
      ->type_name("KEYS");
  command->add_option("--line-format", writing.layout.lineFormat, say("A row's text, with %@ for each key"))
      ->type_name("FORMAT");
  command
      ->add_option("--columns", options->columns, say("Titles of the columns, separated by commas (default: the keys)"))
      ->type_name("TITLES");
  command->add_flag("--plain", options->isPlain,
                    say("Messages as the store has them, without words for what happened"));
  command->add_flag("--deleted", options->reading.deleted, say("With messages that were deleted lately"));
  command->add_flag("--orphaned", options->reading.orphaned,
                    say("With messages of these people that are in no conversation; alone: only those, of anybody"));
  command->add_flag("--evidence", options->wantsEvidence,
                    say("Put a manifest beside the report that 'chatsum verify' checks: digests of source and report"));
  command->add_option("--output", writing.output, say("Put a copy of the report there"))->type_name("FILE");
  command->callback([&invocation, options] {
    invocation.command = [&invocation, options] { return makeReport(invocation, *options); };
  });
}

}  // namespace chatsum::cli
