#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "hosts/cli/DisplayText.h"
#include "hosts/cli/Invocation.h"
#include "hosts/cli/Json.h"
#include "hosts/cli/Lookup.h"
#include "hosts/device/conversations/ConversationList.h"
#include "platform/foundation/Utf8.h"

namespace chatsum::cli {
namespace {

constexpr std::size_t kMostCells = 40;

void printJson(const std::vector<device::Conversation>& conversations, std::ostream& out) {
  JsonArrayWriter writer(out);
  for (const device::Conversation& conversation : conversations) {
    Json recipients = Json::array();
    for (const device::ConversationMember& member : conversation.members) recipients.push_back(member.handle);
    const Json element = {{"guids", conversation.guids},
                          {"name", conversation.name},
                          {"recipients", recipients},
                          {"messages", conversation.messages},
                          {"first", jsonOf(conversation.first)},
                          {"last", jsonOf(conversation.last)}};
    if (!writer.append(element)) return;
  }
  writer.finish();
}

void printTable(const std::vector<device::Conversation>& conversations, std::ostream& out) {
  std::vector<std::vector<std::string>> rows;
  for (const device::Conversation& conversation : conversations) {
    rows.push_back({shortened(conversation.name, kMostCells), std::to_string(conversation.messages),
                    dayOf(conversation.first), dayOf(conversation.last), conversation.guids.front()});
  }
  out << table({say("NAME"), " " + say("MESSAGES"), say("FIRST"), say("LAST"), "GUID"}, rows);
}

int listConversations(const Invocation& invocation, bool asJson) {
  const Console& console = invocation.console;
  if (!invocation.requireSource("conversations")) return kWrongUsage;
  const auto session = invocation.openSession();
  if (!session) return console.fail(session.problem().sentence);
  const auto one = session.value()->connect(), two = session.value()->connect();
  if (!one) return console.fail(one.problem().sentence);
  if (!two) return console.fail(two.problem().sentence);
  auto list = device::ConversationList::read(one.value(), session.value()->findPerson());
  if (!list) return console.fail(list.problem().sentence);
  if (auto problem = list.value().countMessages(one.value(), two.value())) return console.fail(problem->sentence);
  if (auto problem = session.value()->checkUnchanged()) return console.fail(problem->sentence);

  const std::vector<device::Conversation>& conversations = list.value().conversations();
  if (asJson) {
    printJson(conversations, console.out);
  } else if (!conversations.empty()) {
    printTable(conversations, console.out);
  }
  if (conversations.empty()) console.note(say("The Messages store holds no conversations."));
  if (const std::string problem = session.value()->contactsProblem(); !problem.empty()) console.remark(problem);
  return kDone;
}

}  // namespace

void addConversationsCommand(CLI::App& program, Invocation& invocation) {
  CLI::App* command = program.add_subcommand("conversations", say("List the conversations, the newest first"));
  const auto asJson = std::make_shared<bool>(false);
  command->add_flag("--json", *asJson, say("Print a JSON array instead of a table"));
  command->callback([&invocation, asJson] {
    invocation.command = [&invocation, asJson] { return listConversations(invocation, *asJson); };
  });
}

}  // namespace chatsum::cli
