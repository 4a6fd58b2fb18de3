#include "hosts/desktop/engine/MessageList.h"

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

}  // namespace

device::StoreResult<std::shared_ptr<const MessageList>> readMessages(
    device::DeviceSession& session, const device::Conversation& conversation,
    const std::function<void(std::uint64_t done, std::uint64_t total)>& progress) {
  device::ReadingOptions options;
  options.progress = progress;
  options.namesOptions = false;
  auto read = device::readConversation(session, conversation, options);
  if (!read) return read.problem();
  device::Reading& reading = read.value();
  auto list = std::make_shared<MessageList>();
  list->events = findEvents(session, reading.records);
  list->rows =
      ReportRows(std::move(reading.records), device::messagesContent(), device::reportNameFor(conversation.name));
  list->balance = reading.balance.sentence(device::Done::kShown);
  list->notes = std::move(reading.notes);
  return std::shared_ptr<const MessageList>(std::move(list));
}

}  // namespace chatsum::desktop
