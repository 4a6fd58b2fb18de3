#include "hosts/device/stores/StoreCheck.h"

#include "hosts/device/language/Say.h"
#include "hosts/device/stores/StoreColumns.h"

namespace chatsum::device {
namespace {

// Up to iOS 5 a conversation was a `msg_group`.
bool isOlderMessagesStore(const StoreColumns& columns) { return columns.has("message") && columns.has("msg_group"); }

StoreProblem describeEmptySchema(const StoreSnapshot& snapshot) {
  if (!snapshot.isCopy() && usesWal(snapshot.databasePath())) {
    return {
        say("'{0}' is a database without any tables; its content may stand in the file '{0}-wal', which is missing: "
            "copy that file beside it.",
            snapshot.shownPath())};
  }
  return {
      say("'{0}' is a database without any tables; copy it again from the device or backup.", snapshot.shownPath())};
}

}  // namespace

const StoreKind& messagesStore() {
  static const StoreKind kind = {toSay("a Messages store"),
                                 {{"message", {"guid", "date"}},
                                  {"chat", {"guid"}},
                                  {"handle", {"id"}},
                                  {"chat_message_join", {"chat_id", "message_id"}}}};
  return kind;
}

std::optional<StoreProblem> checkStore(sqlite3* connection, const StoreSnapshot& snapshot, const StoreKind& kind) {
  StoreColumns columns(connection);
  if (!columns.hasAnyTable()) return describeEmptySchema(snapshot);
  const std::string& path = snapshot.shownPath();
  const std::string name = said(kind.name);
  for (const NeededTable& table : kind.tables) {
    if (columns.has(table.name)) continue;
    if (&kind == &messagesStore() && isOlderMessagesStore(columns)) {
      return StoreProblem{say(
          "'{0}' is a Messages store of iOS 5 or earlier, which cannot be read; stores of iOS 6 and later can.", path)};
    }
    return StoreProblem{
        say("'{0}' is a database but not {1}: it has no table '{2}'; check the path.", path, name, table.name)};
  }
  for (const NeededTable& table : kind.tables) {
    for (const std::string_view column : table.columns) {
      if (columns.has(table.name, column)) continue;
      return StoreProblem{
          say("'{0}' is not {1} that can be read: its table '{2}' has no column '{3}'; check that it comes "
              "from an iPhone, iPad or Mac.",
              path, name, table.name, column)};
    }
  }
  return std::nullopt;
}

}  // namespace chatsum::device
