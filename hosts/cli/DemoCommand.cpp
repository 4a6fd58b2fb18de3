#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "hosts/cli/Invocation.h"
#include "hosts/device/calls/CallReport.h"
#include "hosts/device/conversations/ConversationList.h"
#include "hosts/device/report/ReportJob.h"
#include "hosts/device/sample/SampleDevice.h"

namespace chatsum::cli {
namespace {

constexpr const char* kDefaultFolder = "chatsum-demo";

/// The sample's liveliest conversation; none when it has none or cannot be read.
device::StoreResult<device::Conversation> liveliest(const device::DeviceSession& session) {
  const auto one = session.connect(), two = session.connect();
  if (!one) return one.problem();
  if (!two) return two.problem();
  auto list = device::ConversationList::read(one.value(), session.findPerson());
  if (!list) return list.problem();
  if (auto problem = list.value().countMessages(one.value(), two.value())) return *problem;
  const auto& all = list.value().conversations();
  const auto most = std::max_element(
      all.begin(), all.end(), [](const auto& left, const auto& right) { return left.messages < right.messages; });
  if (most == all.end()) return device::StoreProblem{say("The sample device holds no conversations.")};
  return *most;
}

std::string shellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

int showDemo(Invocation& invocation, const std::string& folder) {
  const Console& console = invocation.console;
  std::error_code error;
  const std::filesystem::path root = std::filesystem::absolute(folder.empty() ? "." : folder, error).lexically_normal();
  if (error) return console.fail(say("The folder '{0}' cannot be found ({1}).", folder, error.message()));
  if (const auto problem = invocation.refusePlace(root.string())) return console.fail(problem->sentence);
  if (!invocation.home.empty()) {
    if (const auto home = invocation.writableHome(); !home) return console.fail(home.problem().sentence);
  }
  invocation.source = (root / "device").string();
  if (invocation.home.empty()) invocation.home = (root / "home").string();
  if (const auto problem = device::writeSampleDevice(invocation.source)) return console.fail(*problem);

  const auto session = invocation.openSession();
  if (!session) return console.fail(session.problem().sentence);
  const auto conversation = liveliest(*session.value());
  if (!conversation) return console.fail(conversation.problem().sentence);
  for (const device::ReportFormat format :
       {device::ReportFormat::kText, device::ReportFormat::kCsv, device::ReportFormat::kPdf}) {
    device::ReportOptions options;
    options.layout.format = format;
    options.replace = true;  // those of an earlier run
    const auto made = device::makeReport(*session.value(), conversation.value(), options);
    if (!made) return console.fail(made.problem().sentence);
    console.result(made.value().path);
    console.note(made.value().balance.sentence());
  }
  device::CallReportOptions calls;
  calls.replace = true;
  calls.calls.region = invocation.region;
  const auto made = device::makeCallReport(*session.value(), calls);
  if (!made) return console.fail(made.problem().sentence);
  console.result(made.value().path);
  console.note(made.value().balance.sentence());
  const std::string program = "  chatsum --source " + shellQuoted(invocation.source);
  console.note("");
  console.note(say("The sample device is in {0}. Try next:", invocation.source));
  for (const std::string& words : {std::string("conversations"), "messages " + shellQuoted(conversation.value().name),
                                   std::string("calls"), std::string("report --help")}) {
    console.note(program + " " + words);
  }
  return kDone;
}

}  // namespace

void addDemoCommand(CLI::App& program, Invocation& invocation) {
  CLI::App* command = program.add_subcommand("demo", say("Write a sample device and a report of each kind"));
  const auto folder = std::make_shared<std::string>(kDefaultFolder);
  command->add_option("DIR", *folder, say("Where to write (default: chatsum-demo)"))->type_name("");
  command->callback(
      [&invocation, folder] { invocation.command = [&invocation, folder] { return showDemo(invocation, *folder); }; });
}

}  // namespace chatsum::cli
