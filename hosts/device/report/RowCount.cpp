#include "hosts/device/report/RowCount.h"

#include <algorithm>

#include "hosts/device/conversations/MessageIndex.h"
#include "hosts/device/conversations/StoredDate.h"
#include "platform/foundation/Utf8.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

std::string listOf(const std::vector<std::int64_t>& chats) {
  std::string list;
  for (const std::int64_t chat : chats) list.append(list.empty() ? "" : ",").append(std::to_string(chat));
  return list;
}

/// Rows beyond one for each message: those of the second attachment and the ones after it.
std::uint64_t countFurtherAttachments(const sqlite::Connection& store, const std::vector<std::int64_t>& messages) {
  std::uint64_t further = 0;
  const sqlite::Statement counts(
      store.get(), "SELECT message_id, count(*) FROM message_attachment_join GROUP BY message_id HAVING count(*) > 1");
  while (counts && counts.step() == SQLITE_ROW) {
    if (!std::binary_search(messages.begin(), messages.end(), counts.integer(0))) continue;
    further += static_cast<std::uint64_t>(counts.integer(1) - 1);
  }
  return further;
}

/// The true dates of the messages whose date the library cannot tell, by GUID.
void findOddDates(const sqlite::Connection& store, const MessageDates& dates, const std::vector<std::int64_t>& messages,
                  RowCount& count) {
  const sqlite::Statement guidOf(store.get(), "SELECT guid FROM message WHERE ROWID = ?1");
  for (const std::int64_t message : messages) {
    const std::int64_t date = dates.find(message);
    if (isReadRightly(nanosecondsOf(date)) || !guidOf) continue;
    guidOf.reset();
    guidOf.bind(1, message);
    if (guidOf.step() != SQLITE_ROW) continue;
    const std::string_view guid = guidOf.text(0);
    count.oddDates[utf8::repaired(guid.substr(0, guid.find('\0')))] = dateFromStored(date);
  }
}

// Few messages have attachments, so the search begins with these. The marks of attachments and app cards are no words.
std::uint64_t countWordsBesideFiles(const sqlite::Connection& store, const std::vector<std::int64_t>& chats) {
  const sqlite::Statement count(
      store.get(),
      "SELECT count(DISTINCT m.ROWID) FROM attachment a CROSS JOIN message_attachment_join mj ON mj.attachment_id = "
      "a.ROWID "
      "CROSS JOIN message m ON m.ROWID = mj.message_id WHERE a.filename IS NOT NULL AND EXISTS (SELECT 1 FROM "
      "chat_message_join j WHERE j.message_id = m.ROWID AND j.chat_id IN (" +
          listOf(chats) +
          ")) AND trim(m.text, char(65532) || char(65533) || ' ' || char(9) || char(10) || char(13)) <> ''");
  return count && count.step() == SQLITE_ROW ? static_cast<std::uint64_t>(count.integer(0)) : 0;
}

}  // namespace

RowCount countRows(const sqlite::Connection& store, const std::vector<std::int64_t>& chats) {
  RowCount count;
  MessageDates dates;
  std::vector<std::int64_t> messages;
  count.failure = dates.read(store);
  if (!count.failure) count.failure = readMessagesOf(store, chats, dates, messages);
  if (count.failure) return count;
  count.rows = messages.size() + countFurtherAttachments(store, messages);
  findOddDates(store, dates, messages, count);
  count.wordsBesideFiles = countWordsBesideFiles(store, chats);
  return count;
}

TextlessRows countTextlessRows(const sqlite::Connection& store, const BodyCounters& counters,
                               const std::vector<std::int64_t>& chats) {
  TextlessRows count;
  const std::uint64_t undecodableBefore = counters.undecodable;
  const sqlite::Statement rows(
      store.get(),
      "SELECT m.text IS NULL FROM message m LEFT JOIN message_attachment_join mj ON mj.message_id = "
      "m.ROWID WHERE m.ROWID IN (SELECT message_id FROM chat_message_join WHERE chat_id IN (" +
          listOf(chats) + "))");
  if (!rows) {
    count.failure = store.lastError();
    return count;
  }
  std::uint64_t textless = 0;
  int code = rows.step();
  for (; code == SQLITE_ROW; code = rows.step()) textless += rows.integer(0) != 0 ? 1 : 0;
  if (code != SQLITE_DONE) count.failure = store.lastError();
  count.withUnreadableBody = std::min<std::uint64_t>(counters.undecodable - undecodableBefore, textless);
  count.withoutBody = textless - count.withUnreadableBody;
  return count;
}

}  // namespace chatsum::device
