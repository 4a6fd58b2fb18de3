#include "hosts/device/conversations/StoredChats.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "hosts/device/language/Say.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

constexpr std::int64_t kGroupStyle = 43;
constexpr std::int64_t kOnePersonStyle = 45;

StoreProblem unreadable(const sqlite::Connection& store) {
  return {say(
      "The conversations in the Messages store cannot be read ({0}): the file is damaged, so take a new copy of the "
      "device.",
      store.lastError())};
}

/// The column's name, or NULL when the table has no such column.
std::string columnOrNull(const sqlite::Connection& store, const std::string& table, const std::string& column) {
  const sqlite::Statement probe(store.get(), "SELECT " + column + " FROM " + table + " LIMIT 0");
  return probe ? column : "NULL";
}

bool isGroupChat(const sqlite::Statement& row, int styleColumn, int roomColumn, const std::string& guid) {
  const std::int64_t style = row.isNull(styleColumn) ? 0 : row.integer(styleColumn);
  if (style == kGroupStyle || style == kOnePersonStyle) return style == kGroupStyle;
  // Without a style that says it: rooms and GUIDs of groups have a form of their own.
  return !row.text(roomColumn).empty() || guid.find(";+;") != std::string::npos;
}

bool readChatTable(const sqlite::Connection& store, std::vector<StoredChat>& chats) {
  const sqlite::Statement rows(
      store.get(), "SELECT ROWID, guid, " + columnOrNull(store, "chat", "chat_identifier") + ", " +
                       columnOrNull(store, "chat", "display_name") + ", " + columnOrNull(store, "chat", "group_id") +
                       ", " + columnOrNull(store, "chat", "style") + ", " + columnOrNull(store, "chat", "room_name") +
                       " FROM chat WHERE guid IS NOT NULL ORDER BY ROWID");
  if (!rows) return false;
  int code = rows.step();
  for (; code == SQLITE_ROW; code = rows.step()) {
    StoredChat chat;
    chat.id = rows.integer(0);
    chat.guid = rows.text(1);
    chat.identifier = rows.text(2);
    chat.displayName = rows.text(3);
    chat.groupId = rows.text(4);
    chat.isGroup = isGroupChat(rows, 5, 6, chat.guid);
    chats.push_back(std::move(chat));
  }
  return code == SQLITE_DONE;
}

bool readMembers(const sqlite::Connection& store, std::vector<StoredChat>& chats) {
  std::unordered_map<std::int64_t, StoredChat*> chatsById;
  for (StoredChat& chat : chats) chatsById.emplace(chat.id, &chat);
  const sqlite::Statement rows(store.get(), "SELECT j.chat_id, h.id, " +
                                                columnOrNull(store, "handle", "person_centric_id") +
                                                " FROM chat_handle_join j JOIN handle h ON h.ROWID = j.handle_id "
                                                "WHERE h.id IS NOT NULL ORDER BY j.ROWID");
  if (!rows) return false;
  int code = rows.step();
  for (; code == SQLITE_ROW; code = rows.step()) {
    const auto chat = chatsById.find(rows.integer(0));
    if (chat == chatsById.end()) continue;
    std::vector<StoredMember>& members = chat->second->members;
    const std::string_view handle = rows.text(1);
    const bool isKnown = std::any_of(members.begin(), members.end(),
                                     [&](const StoredMember& member) { return member.handle == handle; });
    if (!isKnown) members.push_back({std::string(handle), std::string(rows.text(2))});
  }
  return code == SQLITE_DONE;
}

// A table of newer stores. What it holds beyond these two columns does not matter here, and a store without it is
// whole.
void readLookups(const sqlite::Connection& store, std::vector<ChatLookup>& lookups) {
  const sqlite::Statement rows(
      store.get(), "SELECT identifier, chat FROM chat_lookup WHERE identifier IS NOT NULL AND chat IS NOT NULL");
  while (rows && rows.step() == SQLITE_ROW) lookups.push_back({std::string(rows.text(0)), std::string(rows.text(1))});
}

}  // namespace

StoreResult<StoredChats> readChats(const sqlite::Connection& store) {
  StoredChats rows;
  if (!readChatTable(store, rows.chats) || !readMembers(store, rows.chats)) return unreadable(store);
  for (StoredChat& chat : rows.chats) {
    if (!chat.isGroup && chat.members.empty() && !chat.identifier.empty())
      chat.members.push_back({chat.identifier, {}});
  }
  readLookups(store, rows.lookups);
  return rows;
}

}  // namespace chatsum::device
