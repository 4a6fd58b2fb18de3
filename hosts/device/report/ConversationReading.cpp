#include "hosts/device/report/ConversationReading.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <thread>
#include <unordered_set>
#include <utility>

#include "hosts/device/conversations/HostConversation.h"
#include "hosts/device/report/RowCount.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

constexpr std::int64_t kOldestFirst = 0, kNewestFirst = 1;

std::string damaged(const DeviceSession& session, const std::string& reason) {
  return "'" + session.messages().shownPath() + "' is damaged: not all messages can be read (" + reason +
         "); copy it again from the device or backup.";
}

std::uint64_t expectedRows(const sqlite::Connection& store, const Conversation& conversation) {
  std::uint64_t rows = 0;
  const sqlite::Statement count(store.get(), "SELECT count(*) FROM chat_message_join WHERE chat_id = ?1");
  for (const std::int64_t chat : conversation.chats) {
    if (!count) break;
    count.reset();
    count.bind(1, chat);
    if (count.step() == SQLITE_ROW) rows += static_cast<std::uint64_t>(count.integer(0));
  }
  return rows;
}

/// Puts the true date into the records whose date the library cannot tell. A message without a date loses the one that the
/// library made up. Answers how many rows have none.
std::uint64_t repairDates(Array& records, const RowCount& count) {
  if (count.oddDates.empty()) return 0;
  std::uint64_t undated = 0;
  RecordField guidField("guid");
  for (Value& item : records.mutableItems()) {
    const Value* guid = guidField.find(*item.asRecord());
    const String* text = guid ? guid->asString() : nullptr;
    const auto odd = text ? count.oddDates.find(text->str()) : count.oddDates.end();
    if (odd == count.oddDates.end()) continue;
    Record record = *item.asRecord();
    item = Value();
    if (odd->second) {
      record.set("Date", Date{std::floor(odd->second->secondsSince1970)});
    } else {
      record.remove("Date");
      ++undated;
    }
    item = Value(std::move(record));
  }
  return undated;
}

/// Drops what was not asked for and counts it.
class Selection {
 public:
  Selection(const ReadingOptions& options, Balance& balance) : range_(options.range), balance_(balance) {
    for (const std::string& guid : options.excluded) excluded_.insert(guid);
  }

  void apply(Array& records) {
    if (excluded_.empty() && range_.isOpen()) return;
    std::erase_if(records.mutableItems(), [this](const Value& item) { return isDropped(*item.asRecord()); });
  }
  [[nodiscard]] bool wasSeen(const std::string& guid) const { return seen_.contains(guid); }

 private:
  bool isDropped(const Record& record) {
    const Value* guid = excluded_.empty() ? nullptr : guidField_.find(record);
    if (guid && guid->asString() && excluded_.contains(guid->asString()->str())) {
      seen_.insert(guid->asString()->str());
      ++balance_.excluded;
      return true;
    }
    if (range_.isOpen()) return false;
    const Value* value = dateField_.find(record);
    const Date* date = value ? value->asDate() : nullptr;
    if (!date) {
      ++balance_.undatedOutside;
      return true;
    }
    if (range_.contains(*date)) return false;
    ++balance_.outsideTimes;
    return true;
  }

  const TimeRange& range_;
  Balance& balance_;
  std::unordered_set<std::string> excluded_, seen_;
  RecordField guidField_{"guid"}, dateField_{"Date"};
};

void noteBodies(const BodyCounters& counters, std::vector<std::string>& notes) {
  if (counters.recovered > 0) {
    notes.push_back(fmt::format("{} texts were saved from damaged bodies.", counters.recovered.load()));
  }
  if (counters.replacedSequences > 0) {
    notes.push_back(fmt::format("{} unreadable characters are shown as \uFFFD.", counters.replacedSequences.load()));
  }
}

}  // namespace

StoreResult<Reading> readConversation(DeviceSession& session, const Conversation& conversation,
                                      const ReadingOptions& options) {
  const auto countCounters = std::make_shared<BodyCounters>();
  auto plain = session.connect();
  if (!plain) return plain.problem();
  auto counting = session.connectWithTexts(countCounters);
  if (!counting) return counting.problem();
  const HostConversation host(conversation.guids, peopleOf(plain.value(), conversation, session.findPerson()));

  Reading reading;
  RowCount count;
  const BodyCounters& bodies = session.startLibrary();
  if (options.progress) {
    const std::uint64_t total = expectedRows(plain.value(), conversation);
    session.setRowObserver([&options, total](std::uint64_t rows) { options.progress(rows, total); });
  }
  {
    const std::jthread counter([&] { count = countRows(counting.value(), *countCounters, conversation.chats); });
    ChatsumUtils::allMessagesForConversation(host, {}, options.newestFirst ? kNewestFirst : kOldestFirst,
                                             [&](Array records, bool, bool) { reading.records = std::move(records); });
  }
  session.setRowObserver(nullptr);
  if (count.failure) return StoreProblem{damaged(session, *count.failure)};
  if (auto problem = session.checkUnchanged()) return *problem;

  Balance& balance = reading.balance;
  balance.inStore = count.rows;
  balance.read = reading.records.size();
  balance.withoutText = count.withoutText;
  balance.unreadableBody = count.unreadableBody;
  const std::uint64_t undated = repairDates(reading.records, count);
  Selection selection(options, balance);
  selection.apply(reading.records);
  balance.written = reading.records.size();
  if (!balance.holds()) {
    return StoreProblem{damaged(session, fmt::format("{} rows were counted, {} read, {} have no text", balance.inStore,
                                                     balance.read, balance.withoutText + balance.unreadableBody))};
  }

  noteBodies(bodies, reading.notes);
  if (undated > balance.undatedOutside) {
    reading.notes.push_back(fmt::format("{} rows have no date in the store; the place of theirs stays empty.",
                                        undated - balance.undatedOutside));
  }
  for (const std::string& guid : options.excluded) {
    if (!selection.wasSeen(guid)) reading.notes.push_back("No message with text has the GUID '" + guid + "' to exclude.");
  }
  return reading;
}

}  // namespace chatsum::device
