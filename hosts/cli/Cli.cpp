#include "hosts/cli/Cli.h"

#include <sqlite3.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <string>

#include "hosts/cli/Invocation.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/report/TimeZone.h"
#include "hosts/device/stores/SnapshotFolder.h"

namespace chatsum::cli {
namespace {

/// Every connection stays on one thread at a time, and nobody asks for SQLite's memory statistics. Without both it is
/// faster. Works only before the first use.
void configureSqlite() {
  static std::once_flag once;
  std::call_once(once, [] {
    sqlite3_config(SQLITE_CONFIG_MULTITHREAD);
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  });
}

/// The country of the user's locale ("de_AT.UTF-8" → "AT"), US for locales without one.
std::string regionOfLocale() {
  for (const char* variable : {"LC_ALL", "LC_TELEPHONE", "LANG"}) {
    const char* value = std::getenv(variable);
    if (!value || !*value) continue;
    const std::string locale(value);
    const auto line = locale.find('_');
    if (line == std::string::npos || locale.size() < line + 3) break;
    const std::string region = locale.substr(line + 1, 2);
    if (std::isupper(static_cast<unsigned char>(region[0])) && std::isupper(static_cast<unsigned char>(region[1]))) {
      return region;
    }
    break;
  }
  return "US";
}

bool isRegion(const std::string& text) {
  return text.size() == 2 &&
         std::all_of(text.begin(), text.end(), [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; });
}

void addGlobalOptions(CLI::App& program, Invocation& invocation, std::string& timeZone) {
  program
      .add_option("--source", invocation.source,
                  say("Backup, folder that mirrors a device, home of a Mac, or a store such as sms.db"))
      ->envname("CHATSUM_SOURCE")
      ->type_name("PATH");
  program
      .add_option(
          "--home", invocation.home,
          say("Home directory; reports land in DIR/Library/Preferences/Chatsum (default: below your data folder)"))
      ->type_name("DIR");
  program.add_option("--owner", invocation.owner, say("Name shown for the device's owner instead of \"Me\""))
      ->type_name("NAME");
  program
      .add_option("--region", invocation.region,
                  say("Country of phone numbers without a country code (default: that of your locale, else US)"))
      ->type_name("CODE");
  CLI::Option* file =
      program
          .add_option("--password-file", invocation.passwordFile,
                      say("File whose first line is the password of an encrypted backup; - is standard input"))
          ->type_name("FILE");
  program.add_option("--password-fd", invocation.passwordDescriptor, say("The same from an open file descriptor"))
      ->type_name("NUMBER")
      ->check(CLI::NonNegativeNumber)
      ->excludes(file);
  program.add_option("--timezone", timeZone, say("Zone that times are read and written in (default: the machine's)"))
      ->type_name("ZONE");
  CLI::Option* verbose = program.add_flag("-v,--verbose", invocation.isVerbose, say("Print the library's log lines"));
  program.add_flag("-q,--quiet", invocation.console.isQuiet, say("Print results and errors only"))->excludes(verbose);
}

/// Options of the program may stand behind its commands, and those of a command behind what it does.
void letOptionsFollow(CLI::App& program) {
  for (CLI::App* command : program.get_subcommands({})) {
    command->fallthrough();
    letOptionsFollow(*command);
  }
}

/// An empty value is what an empty variable of a script leaves; it would pass for an option that was not given. So none
/// is taken, by any option or argument of the program and its commands.
void refuseEmptyValues(CLI::App& program) {
  for (CLI::Option* option : program.get_options()) {
    if (option->get_items_expected_max() == 0) continue;
    option->check([](const std::string& value) {
      return value.empty() ? device::say("The value is empty; give one, or leave it out.") : "";
    });
  }
  for (CLI::App* command : program.get_subcommands({})) refuseEmptyValues(*command);
}

bool hasOption(const CLI::App& program, const std::string& name) {
  if (program.get_option_no_throw(name)) return true;
  const auto commands = program.get_subcommands({});
  return std::any_of(commands.begin(), commands.end(),
                     [&](const CLI::App* command) { return hasOption(*command, name); });
}

/// "--since" of an argument "--since=", which would take the next argument for its value; none when there is no such.
std::optional<std::string> optionWithoutValue(const CLI::App& program, int argumentCount,
                                              const char* const* arguments) {
  for (int i = 1; i < argumentCount; ++i) {
    const std::string argument = arguments[i];
    if (argument == "--") break;
    if (!argument.starts_with("--") || !argument.ends_with('=')) continue;
    std::string name = argument.substr(0, argument.size() - 1);
    if (hasOption(program, name)) return name;
  }
  return std::nullopt;
}

/// The name of the command that was being read when an error came up.
std::string chosenCommand(const CLI::App& program) {
  const auto chosen = program.get_subcommands();
  return chosen.empty() ? "" : chosen.front()->get_name();
}

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

int parseAndRun(int argumentCount, const char* const* arguments, Console& console) {
  CLI::App program(
      say("Makes reports of a device's conversations: text, csv and pdf files, read from a copy of its files."),
      "chatsum");
  Invocation invocation(console);
  invocation.region = regionOfLocale();
  program.set_version_flag("--version", std::string("chatsum ") + CHATSUM_VERSION, say("Print the version and exit"));
  program.set_help_flag("-h,--help", say("Print this help and exit"));
  program.require_subcommand(0, 1);
  std::string timeZone;
  addGlobalOptions(program, invocation, timeZone);
  addSourcesCommand(program, invocation);
  addConversationsCommand(program, invocation);
  addMessagesCommand(program, invocation);
  addCallsCommand(program, invocation);
  addReportCommand(program, invocation);
  addReportsCommand(program, invocation);
  addSettingsCommand(program, invocation);
  addVerifyCommand(program, invocation);
  addDemoCommand(program, invocation);
  letOptionsFollow(program);
  refuseEmptyValues(program);
  if (const auto option = optionWithoutValue(program, argumentCount, arguments)) {
    return console.refuse(*option + ": " + say("The value is empty; give one, or leave it out."), "");
  }
  program.footer(say("Examples:") +
                 "\n"
                 "  chatsum demo\n"
                 "  chatsum --source DEVICE conversations\n"
                 "  chatsum --source DEVICE report \"Maya Lindqvist\" --format pdf\n\n" +
                 say("Exit codes: 0 done, 1 failed, 2 wrong usage."));
  try {
    program.parse(argumentCount, arguments);
  } catch (const CLI::CallForHelp& error) {
    program.exit(error, console.out, console.err);
    return kDone;
  } catch (const CLI::CallForAllHelp& error) {
    program.exit(error, console.out, console.err);
    return kDone;
  } catch (const CLI::CallForVersion& error) {
    program.exit(error, console.out, console.err);
    return kDone;
  } catch (const CLI::Error& error) {
    return console.refuse(firstLine(error.what()), chosenCommand(program));
  }
  if (!isRegion(invocation.region)) {
    return console.refuse(say("'{0}' is no country code; give two letters, such as US.", invocation.region), "");
  }
  if (!invocation.command) {
    return console.refuse(
        say("A command is missing: sources, conversations, messages, report, reports, settings or demo."), "");
  }
  if (invocation.isVerbose) console.errIsTerminal = false;  // a bar between log lines helps nobody
  if (!timeZone.empty() && !device::setTimeZone(timeZone)) {
    return console.refuse(say("'{0}' is no time zone that is known here; give a name such as Europe/Berlin.", timeZone),
                          "");
  }
  configureSqlite();
  ::tzset();
  device::SnapshotFolder::removeOrphans();
  return invocation.command();
}

}  // namespace

int run(int argumentCount, const char* const* arguments, const Streams& streams) {
  Console console(streams);
  int code = kFailed;
  try {
    code = parseAndRun(argumentCount, arguments, console);
  } catch (const std::bad_alloc&) {
    code = console.fail(say("There is not enough memory for this."));
  } catch (const std::exception& error) {
    code = console.fail(say("Something unexpected went wrong ({0}).", error.what()));
  }
  if (console.out.flush()) return code;
  // Whoever closed the pipe, such as `head`, has had enough and needs no message.
  const bool isReaderGone = streams.isReaderGone && streams.isReaderGone();
  if (!isReaderGone) console.fail(say("The results could not be written; is there room where they go?"));
  return code == kDone ? kFailed : code;
}

int run(int argumentCount, const char* const* arguments, std::ostream& out, std::ostream& err) {
  return run(argumentCount, arguments, Streams{.out = out, .err = err});
}

}  // namespace chatsum::cli
