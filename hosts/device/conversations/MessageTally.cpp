#include "hosts/device/conversations/MessageTally.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>

#include "hosts/device/conversations/MessageIndex.h"
#include "hosts/device/conversations/StoredDate.h"
#include "hosts/device/language/Say.h"
#include "platform/foundation/SideThread.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

StoreProblem unreadable(const std::string& reason) {
  return {
      say("The messages in the Messages store cannot be counted ({0}): the file is damaged, so take a new copy of the "
          "device.",
          reason)};
}

std::int64_t oneNumber(const sqlite::Connection& store, const char* sql) {
  const sqlite::Statement statement(store.get(), sql);
  return statement && statement.step() == SQLITE_ROW ? statement.integer(0) : 0;
}

/// The messages of every chat, one chat after the other.
struct ChatMessages {
  std::vector<std::int64_t> messages;
  std::unordered_map<std::int64_t, std::pair<std::size_t, std::size_t>> ranges;  // by chat: first place and end

  [[nodiscard]] std::optional<std::string> read(const sqlite::Connection& store) {
    messages.reserve(static_cast<std::size_t>(
        std::max<std::int64_t>(0, oneNumber(store, "SELECT count(*) FROM chat_message_join"))));
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
  keepExisting(messages, dates);  // a message may stand in several of the chats
  for (const std::int64_t message : messages) addMessage(conversation, dates.find(message));
}

}  // namespace

std::optional<StoreProblem> tallyMessages(const sqlite::Connection& one, const sqlite::Connection& two,
                                          std::vector<Conversation>& conversations) {
  MessageDates dates;
  ChatMessages chatMessages;
  std::optional<std::string> datesFailure, chatsFailure;
  {
    SideThread reader([&] { datesFailure = dates.read(one); });
    chatsFailure = chatMessages.read(two);
    reader.join();
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
