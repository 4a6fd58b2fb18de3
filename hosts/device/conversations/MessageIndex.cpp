#include "hosts/device/conversations/MessageIndex.h"

#include <algorithm>

#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

std::int64_t oneNumber(const sqlite::Connection& store, const char* sql) {
  const sqlite::Statement statement(store.get(), sql);
  return statement && statement.step() == SQLITE_ROW ? statement.integer(0) : 0;
}

}  // namespace

std::optional<std::string> MessageDates::read(const sqlite::Connection& store) {
  const std::int64_t largest = oneNumber(store, "SELECT max(ROWID) FROM message");
  const std::int64_t smallest = oneNumber(store, "SELECT min(ROWID) FROM message");
  const std::int64_t count = oneNumber(store, "SELECT count(*) FROM message");
  constexpr std::int64_t kGapsAllowed = 4'000'000;
  isDense_ = smallest >= 0 && largest < count + kGapsAllowed;
  if (isDense_) dates_.assign(static_cast<std::size_t>(largest) + 1, kAbsent);
  // The order of the rows does not matter, so SQLite walks an index on the date, which is a small part of the table.
  const sqlite::Statement rows(store.get(), "SELECT ROWID, date FROM message");
  if (!rows) return store.lastError();
  int code = rows.step();
  for (; code == SQLITE_ROW; code = rows.step()) set(rows.integer(0), std::max(rows.integer(1), kAbsent + 1));
  if (code != SQLITE_DONE) return store.lastError();
  return std::nullopt;
}

void MessageDates::set(std::int64_t message, std::int64_t date) {
  if (!isDense_) {
    sparseDates_[message] = date;
  } else if (static_cast<std::uint64_t>(message) < dates_.size()) {
    dates_[static_cast<std::size_t>(message)] = date;
  }
}

void keepExisting(std::vector<std::int64_t>& messages, const MessageDates& dates) {
  if (!std::is_sorted(messages.begin(), messages.end())) std::sort(messages.begin(), messages.end());
  messages.erase(std::unique(messages.begin(), messages.end()), messages.end());
  std::erase_if(messages, [&](std::int64_t message) { return dates.find(message) == MessageDates::kAbsent; });
}

std::optional<std::string> readMessagesOf(const sqlite::Connection& store, const std::vector<std::int64_t>& chats,
                                          const MessageDates& dates, std::vector<std::int64_t>& messages) {
  const sqlite::Statement rows(store.get(), "SELECT message_id FROM chat_message_join WHERE chat_id = ?1");
  if (!rows) return store.lastError();
  for (const std::int64_t chat : chats) {
    rows.reset();
    rows.bind(1, chat);
    int code = rows.step();
    for (; code == SQLITE_ROW; code = rows.step()) messages.push_back(rows.integer(0));
    if (code != SQLITE_DONE) return store.lastError();
  }
  keepExisting(messages, dates);
  return std::nullopt;
}

}  // namespace chatsum::device
