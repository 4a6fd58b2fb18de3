#include "hosts/device/conversations/MessageTally.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>

#include "hosts/device/conversations/StoredDate.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

StoreProblem unreadable(const std::string& reason) {
  return {"The messages in the Messages store cannot be counted (" + reason +
          "): the file is damaged, so take a new copy of the device."};
}

std::int64_t oneNumber(const sqlite::Connection& store, const char* sql) {
  const sqlite::Statement statement(store.get(), sql);
  return statement && statement.step() == SQLITE_ROW ? statement.integer(0) : 0;
}

/// The stored date of every message by its ROWID. The usual store numbers its messages with few gaps, so a plain list
/// serves; a strange one gets a hash table.
class MessageDates {
 public:
  static constexpr std::int64_t kAbsent = std::numeric_limits<std::int64_t>::min();

  /// Reads all messages. The order of the rows does not matter, so SQLite may walk an index on the date, which is a small
  /// part of the table. Answers the reason of a failure.
  [[nodiscard]] std::optional<std::string> read(const sqlite::Connection& store) {
    const std::int64_t largest = oneNumber(store, "SELECT max(ROWID) FROM message");
    const std::int64_t smallest = oneNumber(store, "SELECT min(ROWID) FROM message");
    const std::int64_t count = oneNumber(store, "SELECT count(*) FROM message");
    constexpr std::int64_t kGapsAllowed = 4'000'000;
    isDense_ = smallest >= 0 && largest < count + kGapsAllowed;
    if (isDense_) dates_.assign(static_cast<std::size_t>(largest) + 1, kAbsent);
    const sqlite::Statement rows(store.get(), "SELECT ROWID, date FROM message");
    if (!rows) return store.lastError();
    int code = rows.step();
    for (; code == SQLITE_ROW; code = rows.step()) set(rows.integer(0), std::max(rows.integer(1), kAbsent + 1));
    if (code != SQLITE_DONE) return store.lastError();
    return std::nullopt;
  }

  /// kAbsent when there is no such message.
  [[nodiscard]] std::int64_t find(std::int64_t message) const {
    if (isDense_) {
      const auto place = static_cast<std::uint64_t>(message);
      return place < dates_.size() ? dates_[place] : kAbsent;
    }
    const auto found = sparseDates_.find(message);
    return found == sparseDates_.end() ? kAbsent : found->second;
  }

 private:
  void set(std::int64_t message, std::int64_t date) {
    if (!isDense_) {
      sparseDates_[message] = date;
    } else if (static_cast<std::uint64_t>(message) < dates_.size()) {
      dates_[static_cast<std::size_t>(message)] = date;
    }
  }

  bool isDense_ = true;
  std::vector<std::int64_t> dates_;
  std::unordered_map<std::int64_t, std::int64_t> sparseDates_;
};

/// The messages of every chat, one chat after the other.
struct ChatMessages {
  std::vector<std::int64_t> messages;
  std::unordered_map<std::int64_t, std::pair<std::size_t, std::size_t>> ranges;  // by chat: first place and end

  [[nodiscard]] std::optional<std::string> read(const sqlite::Connection& store) {
    messages.reserve(static_cast<std::size_t>(std::max<std::int64_t>(
        0, oneNumber(store, "SELECT count(*) FROM chat_message_join"))));
    const sqlite::Statement rows(store.get(),
                                 "SELECT chat_id, message_id FROM chat_message_join ORDER BY chat_id, message_id");
    if (!rows) return store.lastError();
    std::pair<std::size_t, std::size_t>* range = nullptr;
    std::int64_t chat = 0;
    int code = rows.step();
    for (; code == SQLITE_ROW; code = rows.step()) {
      if (!range || rows.integer(0) != chat) {
        chat = rows.integer(0);
        range = &ranges[chat];
        range->first = messages.size();
      }
      messages.push_back(rows.integer(1));
      range->second = messages.size();
    }
    if (code != SQLITE_DONE) return store.lastError();
    return std::nullopt;
  }
};

void addMessage(Conversation& conversation, std::int64_t storedDate) {
  ++conversation.messages;
  const std::optional<Date> date = dateFromStored(storedDate);
  if (!date) return;
  if (!conversation.first || *date < *conversation.first) conversation.first = date;
  if (!conversation.last || *date > *conversation.last) conversation.last = date;
}

void tally(Conversation& conversation, const ChatMessages& chatMessages, const MessageDates& dates) {
  std::vector<std::int64_t> messages;
  for (const std::int64_t chat : conversation.chats) {
    const auto range = chatMessages.ranges.find(chat);
    if (range == chatMessages.ranges.end()) continue;
    const auto from = chatMessages.messages.begin() + static_cast<std::ptrdiff_t>(range->second.first);
    const auto end = chatMessages.messages.begin() + static_cast<std::ptrdiff_t>(range->second.second);
    messages.insert(messages.end(), from, end);
  }
  // A message may stand in several of the chats, in a strange store even twice in one.
  if (!std::is_sorted(messages.begin(), messages.end())) std::sort(messages.begin(), messages.end());
  messages.erase(std::unique(messages.begin(), messages.end()), messages.end());
  for (const std::int64_t message : messages) {
    const std::int64_t date = dates.find(message);
    if (date != MessageDates::kAbsent) addMessage(conversation, date);
  }
}

}  // namespace

std::optional<StoreProblem> tallyMessages(const sqlite::Connection& one, const sqlite::Connection& two,
                                          std::vector<Conversation>& conversations) {
  MessageDates dates;
  ChatMessages chatMessages;
  std::optional<std::string> datesFailure, chatsFailure;
  {
    const std::jthread reader([&] { datesFailure = dates.read(one); });
    chatsFailure = chatMessages.read(two);
  }
  if (datesFailure) return unreadable(*datesFailure);
  if (chatsFailure) return unreadable(*chatsFailure);
  for (Conversation& conversation : conversations) {
    conversation.messages = 0;
    conversation.first = conversation.last = std::nullopt;
    tally(conversation, chatMessages, dates);
  }
  return std::nullopt;
}

}  // namespace chatsum::device
