#include <CLI/CLI.hpp>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "hosts/cli/CallOptions.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/Invocation.h"
#include "hosts/cli/Json.h"
#include "hosts/device/calls/CallList.h"
#include "hosts/device/report/ReportWriting.h"

namespace chatsum::cli {
namespace {

constexpr const char* kCommand = "calls";
constexpr std::size_t kMostCells = 44;

struct Options {
  std::optional<std::string> app;
  TimeWords times;
  device::CallListOptions calls;
  bool asJson = false;
};

/// Whole seconds as such, so that most durations are short.
Json secondsOf(const std::optional<double>& duration) {
  if (!duration) return nullptr;
  if (*duration == std::floor(*duration)) return static_cast<std::int64_t>(*duration);
  return *duration;
}

Json wordOrNull(std::string_view word) { return word.empty() ? Json(nullptr) : Json(word); }

void printJson(const std::vector<device::Call>& calls, std::ostream& out) {
  JsonArrayWriter writer(out);
  for (const device::Call& call : calls) {
    Json names = Json::array(), addresses = Json::array();
    for (const device::CallPerson& person : call.people) {
      names.push_back(person.name);
      if (!person.address.empty()) addresses.push_back(person.address);
    }
    const Json element = {{"names", names},
                          {"addresses", addresses},
                          {"date", jsonOf(call.date)},
                          {"duration", secondsOf(call.duration)},
                          {"service", call.service},
                          {"medium", wordOrNull(device::wordOf(call.medium))},
                          {"direction", device::wordOf(call.direction)},
                          {"status", device::wordOf(call.status)}};
    if (!writer.append(element)) return;
  }
  writer.finish();
}

std::string minuteOf(const std::optional<Date>& date) {
  constexpr std::size_t kDayLength = 10, kMinuteLength = 16;
  if (!date) return "-";
  std::string text = device::isoTime(*date).substr(0, kMinuteLength);
  text[kDayLength] = ' ';
  return text;
}

void printTable(const std::vector<device::Call>& calls, std::ostream& out) {
  std::vector<std::vector<std::string>> rows;
  for (const device::Call& call : calls) {
    rows.push_back({minuteOf(call.date), shortened(device::peopleInWords(call), kMostCells),
                    shortened(device::kindInWords(call), kMostCells), device::said(device::wordOf(call.status)),
                    call.duration ? device::durationText(call.duration) : "-"});
  }
  out << table({say("DATE"), say("WHO"), say("CALL"), say("STATUS"), " " + say("DURATION")}, rows);
}

int listCalls(const Invocation& invocation, Options& options) {
  const Console& console = invocation.console;
  if (options.app) options.calls.app = appOfWord(*options.app);
  if (auto problem = readTimes(options.times, options.calls.range)) return console.refuse(*problem, kCommand);
  if (auto problem = device::checkTimes(options.calls.range)) return console.refuse(problem->sentence, kCommand);
  if (!invocation.requireSource(kCommand)) return kWrongUsage;
  options.calls.region = invocation.region;
  const auto session =
      invocation.openSession([](device::DeviceSession::Options& wanted) { wanted.needsMessages = false; });
  if (!session) return console.fail(session.problem().sentence);
  const auto list = device::readCalls(*session.value(), options.calls);
  if (!list) return console.fail(list.problem().sentence);

  const std::vector<device::Call>& calls = list.value().calls;
  if (options.asJson) {
    printJson(calls, console.out);
  } else if (!calls.empty()) {
    printTable(calls, console.out);
  }
  if (!console.out.flush()) return kFailed;  // told by the one who runs the command
  for (const std::string& note : list.value().notes) console.remark(note);
  if (const std::string problem = session.value()->contactsProblem(); !problem.empty()) console.remark(problem);
  console.note(list.value().balance.sentence(device::Done::kShown));
  return kDone;
}

}  // namespace

void addCallsCommand(CLI::App& program, Invocation& invocation) {
  CLI::App* command = program.add_subcommand(kCommand, say("List the calls, the newest first"));
  const auto options = std::make_shared<Options>();
  addAppOption(*command, options->app, say("phone or facetime (default: calls of every app)"));
  addTimeOptions(*command, options->times,
                 {say("Leave out what began before this time (ISO 8601)"),
                  say("Leave out what began after this time; a day counts to its end")});
  command
      ->add_option("--with", options->calls.person,
                   say("Only calls with this person: a number or e-mail address, or the whole name"))
      ->type_name("WHO");
  command->add_flag("--json", options->asJson, say("Print a JSON array instead of a table"));
  command->callback([&invocation, options] {
    invocation.command = [&invocation, options] { return listCalls(invocation, *options); };
  });
}

}  // namespace chatsum::cli
