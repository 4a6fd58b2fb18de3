#include "hosts/desktop/engine/DeviceOpening.h"

#include <optional>
#include <string_view>
#include <utility>

#include "hosts/device/conversations/ConversationList.h"

namespace chatsum::desktop {
namespace {

device::StoreResult<std::vector<device::Conversation>> readConversations(const device::DeviceSession& session) {
  const auto one = session.connect(), two = session.connect();
  if (!one) return one.problem();
  if (!two) return two.problem();
  auto list = device::ConversationList::read(one.value(), session.findPerson());
  if (!list) return list.problem();
  if (auto problem = list.value().countMessages(one.value(), two.value())) return *problem;
  if (auto problem = session.checkUnchanged()) return *problem;
  return list.value().conversations();
}

/// Reads what there is. Calls and messages are each enough without the other.
device::StoreResult<OpenedDevice> readDevice(device::DeviceSession& session, const std::string& region,
                                             const std::function<void(OpeningStep)>& tell) {
  OpenedDevice opened;
  std::optional<device::StoreProblem> messagesProblem;
  tell(OpeningStep::kReadingConversations);
  if (auto conversations = readConversations(session)) {
    opened.hasMessages = true;
    opened.conversations = std::make_shared<ConversationItems>(itemsOf(std::move(conversations.value())));
    for (const ConversationItem& item : *opened.conversations) opened.messages += item.conversation.messages;
  } else {
    messagesProblem = conversations.problem();
  }
  tell(OpeningStep::kReadingCalls);
  session.startLibrary();
  auto calls = readCallBook(session, region);
  if (calls) {
    opened.calls = std::move(calls.value());
  } else if (messagesProblem) {
    return *messagesProblem;
  }
  // The facts are complete only now: some things turn up when a store is brought out.
  opened.facts = session.source().facts();
  opened.notes = opened.facts.warnings;
  if (messagesProblem) opened.notes.push_back(messagesProblem->sentence);
  if (!calls) opened.notes.push_back(calls.problem().sentence);
  if (std::string problem = session.contactsProblem(); !problem.empty()) opened.notes.push_back(std::move(problem));
  return opened;
}

}  // namespace

device::StoreResult<OpenedDevice> openDevice(OpenDevice& place, const device::DeviceSession::Options& options,
                                             const std::function<void(OpeningStep)>& tell,
                                             const Cancellation& cancellation) {
  tell(OpeningStep::kOpening);
  auto session = device::DeviceSession::open(options);
  if (!session) return session.problem();
  place.take(std::move(session.value()));
  if (cancellation.isCancelled()) {
    place.close();
    return device::StoreProblem{"'" + options.source + "' was not opened, because nobody waits for it any more."};
  }
  auto opened = readDevice(*place.session(), options.region, tell);
  if (!opened || cancellation.isCancelled()) place.close();
  return opened;
}

bool isWrongPassword(const device::StoreProblem& problem) {
  return std::string_view(problem.sentence).starts_with("The password does not open the backup ");
}

}  // namespace chatsum::desktop
