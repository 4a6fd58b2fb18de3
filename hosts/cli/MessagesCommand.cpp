#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

#include "hosts/cli/DisplayText.h"
#include "hosts/cli/Invocation.h"
#include "hosts/cli/Json.h"
#include "hosts/cli/Lookup.h"
#include "hosts/cli/Progress.h"
#include "hosts/device/report/ConversationReading.h"
#include "hosts/device/words/Orphans.h"

namespace chatsum::cli {
namespace {

struct Options {
  std::optional<std::string> conversation;
  bool asJson = false;
  bool isPlain = false;
  device::ReadingOptions reading = {};
};

void printJson(const Array& records, std::ostream& out) {
  JsonArrayWriter writer(out);
  for (const Value& record : records) {
    if (!writer.append(jsonOf(record))) return;
  }
  writer.finish();
}

std::string textOf(const Record& record, const char* key) {
  const String* text = record[key].asString();
  return text ? text->str() : "";
}

/// The lines of a text, the later ones set in under the first.
std::string indented(const std::string& text) {
  std::string lines;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    lines.append(start ? "\n    " : "").append(oneLine(std::string_view(text).substr(start, end - start)));
    start = end + 1;
  }
  return lines;
}

void printLines(const Array& records, std::ostream& out) {
  constexpr std::size_t kDayLength = 10, kMinuteLength = 16;
  for (const Value& item : records) {
    const Record& record = *item.asRecord();
    std::string when(kMinuteLength, ' ');
    if (const Date* date = record["Date"].asDate()) {
      when = device::isoTime(*date).substr(0, kMinuteLength);
      when[kDayLength] = ' ';
    }
    out << when << "  " << oneLine(textOf(record, "Name")) << ": " << indented(textOf(record, "Text")) << "\n";
    if (!out) return;
  }
}

int printMessages(const Invocation& invocation, const Options& options) {
  const Console& console = invocation.console;
  if (options.isPlain && (options.reading.deleted || options.reading.orphaned)) {
    return console.refuse(say("--deleted and --orphaned need messages in words; leave --plain out."), "messages");
  }
  if (!options.conversation && !options.reading.orphaned) {
    return console.refuse(say("Say which conversation: CONVERSATION, or --orphaned for messages that are in none."),
                          "messages");
  }
  if (!invocation.requireSource("messages")) return kWrongUsage;
  const auto session =
      invocation.openSession([&](device::DeviceSession::Options& wanted) { wanted.plain = options.isPlain; });
  if (!session) return console.fail(session.problem().sentence);
  const auto conversation = options.conversation ? findConversation(*session.value(), *options.conversation, console)
                                                 : std::optional(device::conversationOfOrphans());
  if (!conversation) return kFailed;

  Progress progress(console);
  device::ReadingOptions reading = options.reading;
  reading.origins = options.asJson;
  if (progress.isShown()) {
    reading.progress = [&](std::uint64_t done, std::uint64_t total) { progress.show(say("Reading"), done, total); };
  }
  const auto read = device::readConversation(*session.value(), *conversation, reading);
  progress.clear();
  if (!read) return console.fail(read.problem().sentence);
  if (options.asJson) {
    printJson(read.value().records, console.out);
  } else {
    printLines(read.value().records, console.out);
  }
  if (!console.out.flush()) return kFailed;  // told by the one who runs the command
  for (const std::string& note : read.value().notes) console.remark(note);
  if (const std::string problem = session.value()->contactsProblem(); !problem.empty()) console.remark(problem);
  console.note(read.value().balance.sentence(device::Done::kShown));
  return kDone;
}

}  // namespace

void addMessagesCommand(CLI::App& program, Invocation& invocation) {
  CLI::App* command = program.add_subcommand("messages", say("Print the messages of a conversation, the oldest first"));
  const auto options = std::make_shared<Options>();
  command
      ->add_option("CONVERSATION", options->conversation,
                   say("Chat GUID, chat identifier, or the conversation's whole name"))
      ->type_name("");
  command->add_flag("--json", options->asJson, say("Print the records as a JSON array"));
  command->add_flag("--plain", options->isPlain,
                    say("Messages as the store has them, without words for what happened"));
  command->add_flag("--deleted", options->reading.deleted, say("With messages that were deleted lately"));
  command->add_flag("--orphaned", options->reading.orphaned,
                    say("With messages of these people that are in no conversation; alone: only those, of anybody"));
  command->callback([&invocation, options] {
    invocation.command = [&invocation, options] { return printMessages(invocation, *options); };
  });
}

}  // namespace chatsum::cli
