#include "hosts/device/report/ConversationReading.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <memory>
#include <thread>
#include <unordered_set>
#include <utility>

#include "hosts/device/conversations/HostConversation.h"
#include "hosts/device/report/Counted.h"
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

/// Puts the true date into the records whose date the library cannot tell. A message without a date loses the one that
/// the library made up. Answers how many rows have none.
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

/// An exception must not leave a thread; the only one to expect is that of missing memory.
RowCount countGuarded(const sqlite::Connection& store, const std::vector<std::int64_t>& chats) {
  RowCount count;
  try {
    count = countRows(store, chats);
  } catch (const std::exception& error) {
    count.failure = error.what();
  }
  return count;
}

/// Finds out why the library read fewer rows than there are.
std::optional<StoreProblem> explainMissing(const DeviceSession& session, const Conversation& conversation,
                                           Balance& balance) {
  const auto counters = std::make_shared<BodyCounters>();
  const auto connection = session.connectWithTexts(counters);
  if (!connection) return connection.problem();
  const TextlessRows textless = countTextlessRows(connection.value(), *counters, conversation.chats);
  if (textless.failure) return StoreProblem{damaged(session, *textless.failure)};
  balance.withoutText = textless.withoutBody;
  balance.unreadableBody = textless.withUnreadableBody;
  return std::nullopt;
}

void addNotes(const BodyCounters& bodies, const RowCount& count, const Balance& balance, std::uint64_t undated,
              std::vector<std::string>& notes) {
  if (bodies.recovered > 0) {
    notes.push_back(
        counted(bodies.recovered, "text was saved from a damaged body.", "texts were saved from damaged bodies."));
  }
  if (bodies.replacedSequences > 0) {
    notes.push_back(counted(bodies.replacedSequences, "unreadable character is", "unreadable characters are") +
                    " shown as \uFFFD.");
  }
  if (undated > balance.undatedOutside) {
    notes.push_back(counted(undated - balance.undatedOutside, "row has", "rows have") +
                    " no date in the store; where it would stand stays empty.");
  }
  if (count.wordsBesideFiles > 0) {
    notes.push_back(counted(count.wordsBesideFiles, "message has words beside its attachment",
                            "messages have words beside their attachments") +
                    "; the attachment's path stands in their place.");
  }
}

}  // namespace

StoreResult<Reading> readConversation(DeviceSession& session, const Conversation& conversation,
                                      const ReadingOptions& options) {
  auto plain = session.connect();
  if (!plain) return plain.problem();
  const HostConversation host(conversation.guids, peopleOf(plain.value(), conversation, session.findPerson()));
  const BodyCounters& bodies = session.startLibrary();
  if (options.progress) {
    const std::uint64_t total = expectedRows(plain.value(), conversation);
    session.setRowObserver([&options, total](std::uint64_t rows) { options.progress(rows, total); });
  }

  Reading reading;
  RowCount count;
  {
    const std::jthread counter([&] { count = countGuarded(plain.value(), conversation.chats); });
    ChatsumUtils::allMessagesForConversation(host, {}, options.newestFirst ? kNewestFirst : kOldestFirst,
                                             [&](Array records, bool, bool) { reading.records = std::move(records); });
  }
  session.setRowObserver(nullptr);
  if (count.failure) return StoreProblem{damaged(session, *count.failure)};
  if (auto problem = session.checkUnchanged()) return *problem;

  Balance& balance = reading.balance;
  balance.inStore = count.rows;
  balance.read = reading.records.size();
  if (balance.read != balance.inStore) {
    if (auto problem = explainMissing(session, conversation, balance)) return *problem;
  }
  const std::uint64_t undated = repairDates(reading.records, count);
  Selection selection(options, balance);
  selection.apply(reading.records);
  balance.written = reading.records.size();
  if (!balance.holds()) {
    return StoreProblem{damaged(session, fmt::format("{} rows were counted, {} read, {} have no text", balance.inStore,
                                                     balance.read, balance.withoutText + balance.unreadableBody))};
  }
  addNotes(bodies, count, balance, undated, reading.notes);
  for (const std::string& guid : options.excluded) {
    if (!selection.wasSeen(guid))
      reading.notes.push_back("No message with text has the GUID '" + guid + "' to exclude.");
  }
  return reading;
}

}  // namespace chatsum::device
