#include "hosts/device/words/StoreLookUps.h"

namespace chatsum::device {

bool hasIndexOn(const sqlite::Connection& store, std::string_view table, std::string_view column) {
  const sqlite::Statement search(store.get(),
                                 "SELECT 1 FROM pragma_index_list(?1, 'main') AS l, pragma_index_info(l.name, 'main') "
                                 "AS i WHERE l.partial = 0 AND i.seqno = 0 AND i.name = ?2 COLLATE NOCASE");
  if (!search) return false;
  search.bind(1, table);
  search.bind(2, column);
  return search.step() == SQLITE_ROW;
}

MessageGuids::MessageGuids(const sqlite::Connection& store) {
  std::string table = "main.message", row = "ROWID";
  if (!hasIndexOn(store, "message", "guid") &&
      store.execute("CREATE TEMP TABLE IF NOT EXISTS chatsum_guids AS SELECT guid, ROWID AS message_row FROM "
                    "main.message;"
                    "CREATE INDEX IF NOT EXISTS temp.chatsum_guids_by_guid ON chatsum_guids (guid)")) {
    table = "temp.chatsum_guids";
    row = "message_row";
  }
  find_ = sqlite::Statement(store.get(), "SELECT " + row + " FROM " + table + " WHERE guid = ?1");
}

std::optional<std::int64_t> MessageGuids::find(std::string_view guid) const {
  if (!find_ || guid.empty()) return std::nullopt;
  find_.reset();
  find_.bind(1, guid);
  if (find_.step() != SQLITE_ROW) return std::nullopt;
  const std::int64_t row = find_.integer(0);
  find_.reset();
  return row;
}

}  // namespace chatsum::device
