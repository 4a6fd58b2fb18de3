#include "hosts/device/report/RowCount.h"

#include <algorithm>

#include "hosts/device/conversations/StoredDate.h"
#include "platform/foundation/Utf8.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

// The GUID is asked for only where it is needed, since nearly every date is told rightly.
std::string statementFor(const std::vector<std::int64_t>& chats) {
  std::string list;
  for (const std::int64_t chat : chats) list.append(list.empty() ? "" : ",").append(std::to_string(chat));
  return "SELECT m.text IS NULL, m.date, CASE WHEN m.date BETWEEN 100000000000000000 AND 999999999999999999 THEN NULL "
         "ELSE m.guid END FROM message m LEFT JOIN message_attachment_join mj ON mj.message_id = m.ROWID "
         "WHERE m.ROWID IN (SELECT message_id FROM chat_message_join WHERE chat_id IN (" +
         list + "))";
}

}  // namespace

RowCount countRows(const sqlite::Connection& store, const BodyCounters& counters,
                   const std::vector<std::int64_t>& chats) {
  RowCount count;
  const std::uint64_t undecodableBefore = counters.undecodable;
  const sqlite::Statement rows(store.get(), statementFor(chats));
  if (!rows) {
    count.failure = store.lastError();
    return count;
  }
  std::uint64_t textless = 0;
  int code = rows.step();
  for (; code == SQLITE_ROW; code = rows.step()) {
    ++count.rows;
    if (rows.integer(0) != 0) ++textless;
    const std::int64_t date = rows.integer(1);
    if (isReadRightly(date) || rows.isNull(2)) continue;
    const std::string_view guid = rows.text(2);
    count.oddDates[utf8::repaired(guid.substr(0, guid.find('\0')))] = dateFromStored(date);
  }
  if (code != SQLITE_DONE) count.failure = store.lastError();
  count.unreadableBody = std::min<std::uint64_t>(counters.undecodable - undecodableBefore, textless);
  count.withoutText = textless - count.unreadableBody;
  return count;
}

}  // namespace chatsum::device
