#include "hosts/cli/Lookup.h"

#include <algorithm>
#include <vector>

#include "hosts/cli/DisplayText.h"
#include "hosts/device/conversations/ConversationList.h"
#include "hosts/device/report/TimeRange.h"

namespace chatsum::cli {
namespace {

constexpr std::size_t kMostCells = 40;

void listMatches(const device::DeviceSession& session, device::ConversationList& list, const std::string& wanted,
                 const Console& console) {
  const auto one = session.connect(), two = session.connect();
  // What was written helps to tell them apart; without it the list still does its work.
  if (one && two) static_cast<void>(list.countMessages(one.value(), two.value()));
  std::vector<std::vector<std::string>> rows;
  for (const std::size_t place : list.find(wanted, session.region())) {
    const device::Conversation& conversation = list.conversations()[place];
    rows.push_back({"  " + shortened(conversation.name, kMostCells), std::to_string(conversation.messages),
                    dayOf(conversation.first), dayOf(conversation.last), conversation.guids.front()});
  }
  console.err << table({"  " + say("NAME"), " " + say("MESSAGES"), say("FIRST"), say("LAST"), "GUID"}, rows);
}

}  // namespace

std::string dayOf(const std::optional<Date>& date) {
  constexpr std::size_t kDayLength = 10;
  return date ? device::isoTime(*date).substr(0, kDayLength) : "-";
}

std::optional<device::Conversation> findConversation(const device::DeviceSession& session, const std::string& wanted,
                                                     const Console& console) {
  const auto connection = session.connect();
  if (!connection) {
    console.fail(connection.problem().sentence);
    return std::nullopt;
  }
  auto list = device::ConversationList::read(connection.value(), session.findPerson());
  if (!list) {
    console.fail(list.problem().sentence);
    return std::nullopt;
  }
  const std::vector<std::size_t> places = list.value().find(wanted, session.region());
  if (places.size() == 1) return list.value().conversations()[places.front()];
  if (places.empty()) {
    console.fail(say("There is no conversation '{0}'; 'chatsum conversations' lists them.", wanted));
    return std::nullopt;
  }
  console.fail(say("'{0}' means {1} conversations; give the GUID of one of them:", wanted, places.size()));
  listMatches(session, list.value(), wanted, console);
  return std::nullopt;
}

}  // namespace chatsum::cli
