#include "hosts/desktop/engine/MessageList.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "hosts/device/report/ConversationReading.h"
#include "hosts/device/report/ReportName.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::desktop {
namespace {

/// What happened stands in square brackets, and nothing beside it. People write brackets, too, so the store is asked
/// about each such row what it is.
bool mayBeEvent(std::string_view text) { return text.starts_with('[') && text.ends_with(']'); }

std::vector<std::uint32_t> findEvents(const device::DeviceSession& session, const Array& records) {
  std::vector<std::uint32_t> events;
  if (session.isPlain()) return events;
  const auto store = session.connect();
  if (!store) return events;
  // Old stores lack the column, and have no such rows then.
  const sqlite::Statement kind(store.value().get(), "SELECT item_type FROM message WHERE guid = ?1");
  if (!kind) return events;
  RecordField textField("Text"), guidField("guid"), placeField("attachment_location");
  for (std::size_t row = 0; row < records.size(); ++row) {
    const Record& record = *records[row].asRecord();
    const Value* text = textField.find(record);
    if (!text || !text->asString() || !mayBeEvent(text->asString()->view()) || placeField.find(record)) continue;
    const Value* guid = guidField.find(record);
    if (!guid || !guid->asString()) continue;
    kind.reset();
    kind.bind(1, guid->asString()->view());
    if (kind.step() == SQLITE_ROW && kind.integer(0) != 0) events.push_back(static_cast<std::uint32_t>(row));
  }
  return events;
}

/// An empty view for a record without the key.
std::string_view textOf(RecordField& field, const Record& record) {
  const Value* value = field.find(record);
  return value && value->asString() ? value->asString()->view() : std::string_view();
}

}  // namespace

std::vector<std::uint32_t> findOrigins(const device::Conversation& conversation, const Array& records,
                                       const std::vector<std::uint32_t>& events) {
  std::vector<std::uint32_t> origins;
  if (conversation.chats.size() < 2) return origins;
  RecordField nameField("Name"), addressField("Address"), serviceField("Service");
  std::string_view service;
  std::map<std::string_view, std::string_view> addresses;  // the last ones; in a group, of each sender
  for (std::size_t row = 0; row < records.size(); ++row) {
    if (std::binary_search(events.begin(), events.end(), row)) continue;
    const Record& record = *records[row].asRecord();
    const std::string_view newAddress = textOf(addressField, record), newService = textOf(serviceField, record);
    std::string_view& address = addresses[conversation.isGroup ? textOf(nameField, record) : std::string_view()];
    const bool isOther =
        (!newAddress.empty() && newAddress != address) || (!newService.empty() && newService != service);
    if (!newAddress.empty()) address = newAddress;
    if (!newService.empty()) service = newService;
    if (isOther) origins.push_back(static_cast<std::uint32_t>(row));
  }
  return origins;
}

device::StoreResult<std::shared_ptr<const MessageList>> readMessages(
    device::DeviceSession& session, const device::Conversation& conversation,
    const std::function<void(std::uint64_t done, std::uint64_t total)>& progress) {
  device::ReadingOptions options;
  options.progress = progress;
  options.namesOptions = false;
  options.origins = true;
  auto read = device::readConversation(session, conversation, options);
  if (!read) return read.problem();
  device::Reading& reading = read.value();
  auto list = std::make_shared<MessageList>();
  list->events = findEvents(session, reading.records);
  list->origins = findOrigins(conversation, reading.records, list->events);
  list->rows =
      ReportRows(std::move(reading.records), device::messagesContent(), device::reportNameFor(conversation.name));
  list->balance = reading.balance.sentence(device::Done::kShown);
  list->notes = std::move(reading.notes);
  return std::shared_ptr<const MessageList>(std::move(list));
}

}  // namespace chatsum::desktop
