#include "hosts/device/words/Orphans.h"

#include <algorithm>
#include <string_view>

#include "hosts/device/language/Say.h"
#include "hosts/device/stores/StoreColumns.h"
#include "hosts/device/words/RowSet.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

/// Messages that stand in chats, and how many.
struct Placed {
  RowSet messages;
  std::uint64_t count = 0;

  [[nodiscard]] std::optional<std::string> add(const sqlite::Connection& store, const char* sql) {
    const sqlite::Statement query(store.get(), sql);
    if (!query) return store.lastError();
    int code = query.step();
    for (; code == SQLITE_ROW; code = query.step()) count += messages.insert(query.integer(0)) ? 1 : 0;
    if (code != SQLITE_DONE) return store.lastError();
    return std::nullopt;
  }
  [[nodiscard]] std::optional<std::string> read(const sqlite::Connection& store) {
    if (auto failure = add(
            store, "SELECT message_id FROM main.chat_message_join WHERE chat_id IN (SELECT ROWID FROM main.chat)")) {
      return failure;
    }
    if (!StoreColumns(store.get()).has("chat_recoverable_message_join", "message_id")) return std::nullopt;
    return add(store, "SELECT message_id FROM main.chat_recoverable_message_join");
  }
};

/// Whether one of the rooms, separated by commas, is one of the conversation's.
bool namesRoom(std::string_view rooms, const Conversation& conversation) {
  while (!rooms.empty()) {
    const std::size_t comma = std::min(rooms.find(','), rooms.size());
    const std::string_view room = rooms.substr(0, comma);
    const auto& known = conversation.identifiers;
    if (std::find(known.begin(), known.end(), room) != known.end()) return true;
    rooms.remove_prefix(std::min(comma + 1, rooms.size()));
  }
  return false;
}

bool belongsTo(const Conversation& conversation, std::string_view rooms, std::string_view handle) {
  if (!rooms.empty()) return conversation.isGroup && namesRoom(rooms, conversation);
  if (conversation.isGroup || handle.empty()) return false;
  return std::any_of(conversation.members.begin(), conversation.members.end(),
                     [&](const ConversationMember& member) { return member.handle == handle; });
}

}  // namespace

Conversation conversationOfOrphans() {
  Conversation conversation;
  conversation.chats = {kOrphanChat};
  conversation.guids = {kOrphanChatGuid};
  conversation.name = say("Messages in no conversation");
  return conversation;
}

std::optional<std::string> findOrphans(const sqlite::Connection& store, const Conversation& conversation,
                                       std::vector<std::int64_t>& messages) {
  StoreColumns columns(store.get());
  Placed placed;
  if (auto failure = placed.read(store)) return failure;
  const bool takesAll =
      std::find(conversation.chats.begin(), conversation.chats.end(), kOrphanChat) != conversation.chats.end();
  const std::string rooms = columns.has("message", "cache_roomnames") ? "m.cache_roomnames" : "NULL";
  const std::string handle = columns.has("message", "handle_id") ? "m.handle_id" : "0";
  const sqlite::Statement row(store.get(), "SELECT " + rooms +
                                               ", h.id FROM main.message m LEFT JOIN main.handle h ON "
                                               "h.ROWID = " +
                                               handle + " WHERE m.ROWID = ?1");
  const sqlite::Statement all(store.get(), "SELECT ROWID FROM main.message");
  if (!row || !all) return store.lastError();
  int code = all.step();
  for (; code == SQLITE_ROW; code = all.step()) {
    const std::int64_t message = all.integer(0);
    if (placed.messages.contains(message)) continue;
    row.reset();
    row.bind(1, message);
    const bool belongs = takesAll || (row.step() == SQLITE_ROW && belongsTo(conversation, row.text(0), row.text(1)));
    if (belongs) messages.push_back(message);
  }
  if (code != SQLITE_DONE) return store.lastError();
  std::sort(messages.begin(), messages.end());
  return std::nullopt;
}

bool mayHaveOrphans(const sqlite::Connection& store) {
  Placed placed;
  if (placed.read(store)) return true;
  const sqlite::Statement all(store.get(), "SELECT count(*) FROM main.message");
  return !all || all.step() != SQLITE_ROW || static_cast<std::uint64_t>(all.integer(0)) != placed.count;
}

}  // namespace chatsum::device
