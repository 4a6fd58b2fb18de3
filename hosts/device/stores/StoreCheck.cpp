#include "hosts/device/stores/StoreCheck.h"

#include "hosts/device/stores/StoreColumns.h"

namespace chatsum::device {
namespace {

// Up to iOS 5 a conversation was a `msg_group`.
bool isOlderMessagesStore(const StoreColumns& columns) { return columns.has("message") && columns.has("msg_group"); }

StoreProblem describeEmptySchema(const StoreSnapshot& snapshot) {
  const std::string start = "'" + snapshot.shownPath() + "' is a database without any tables";
  if (!snapshot.isCopy() && usesWal(snapshot.databasePath())) {
    return {start + "; its content may stand in the file '" + snapshot.shownPath() +
            "-wal', which is missing: copy that file beside it."};
  }
  return {start + "; copy it again from the device or backup."};
}

}  // namespace

const StoreKind& messagesStore() {
  static const StoreKind kind = {"a Messages store",
                                 {{"message", {"guid", "date"}},
                                  {"chat", {"guid"}},
                                  {"handle", {"id"}},
                                  {"chat_message_join", {"chat_id", "message_id"}}}};
  return kind;
}

std::optional<StoreProblem> checkStore(sqlite3* connection, const StoreSnapshot& snapshot, const StoreKind& kind) {
  StoreColumns columns(connection);
  if (!columns.hasAnyTable()) return describeEmptySchema(snapshot);
  const std::string path = "'" + snapshot.shownPath() + "'";
  const std::string name(kind.name);
  for (const NeededTable& table : kind.tables) {
    if (columns.has(table.name)) continue;
    if (&kind == &messagesStore() && isOlderMessagesStore(columns)) {
      return StoreProblem{path +
                          " is a Messages store of iOS 5 or earlier, which cannot be read; stores of iOS 6 and "
                          "later can."};
    }
    return StoreProblem{path + " is a database but not " + name + ": it has no table '" + std::string(table.name) +
                        "'; check the path."};
  }
  for (const NeededTable& table : kind.tables) {
    for (const std::string_view column : table.columns) {
      if (columns.has(table.name, column)) continue;
      return StoreProblem{path + " is not " + name + " that can be read: its table '" + std::string(table.name) +
                          "' has no column '" + std::string(column) +
                          "'; check that it comes from an iPhone, iPad or Mac."};
    }
  }
  return std::nullopt;
}

}  // namespace chatsum::device
