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

/// Adds the messages that are read beside those of the chats.
void addAskedFor(const ReadingFacts& facts, const MessageDates& dates, std::vector<std::int64_t>& messages) {
  if (facts.deleted.empty() && facts.orphans.empty()) return;
  for (const auto& [message, date] : facts.deleted) messages.push_back(message);
  messages.insert(messages.end(), facts.orphans.begin(), facts.orphans.end());
  keepExisting(messages, dates);
}

/// The attachments of one message, `joined` rows in the store, as they are served.
void countFiles(std::int64_t message, std::uint64_t joined, MessageWords& words, WordRows& count) {
  const Reactions::Fate fate = words.facts().reactions.fateOf(message);
  if (fate != Reactions::Fate::kNone) {  // counted once already
    (fate == Reactions::Fate::kShown ? count.reactionsShown : count.reactionsTakenBack) += joined - 1;
    return;
  }
  const auto& rows = words.rowsOf(message);
  const bool isWordsAlone = rows.empty();
  if (isWordsAlone || !rows.front()) ++count.besideFiles;
  for (const MessageFile& file : words.files()) {
    if (file.kind == FileKind::kPreview) ++count.previewFiles;
    if (file.kind == FileKind::kSticker) ++count.stickers;
    if (file.kind == FileKind::kMissing) ++count.missingFiles;
  }
}

/// What words do to the rows of the messages (ascending). Answers the reason of a failure.
std::optional<std::string> countWordRows(const sqlite::Connection& store, const std::vector<std::int64_t>& messages,
                                         MessageWords& words, WordRows& count) {
  const auto isOfReading = [&](std::int64_t message) {
    return std::binary_search(messages.begin(), messages.end(), message);
  };
  for (const auto& [message, fate] : words.facts().reactions.fates()) {
    if (isOfReading(message)) ++(fate == Reactions::Fate::kShown ? count.reactionsShown : count.reactionsTakenBack);
  }
  if (words.facts().withFiles.isEmpty()) return std::nullopt;
  const sqlite::Statement joins(store.get(),
                                "SELECT message_id, count(*) FROM message_attachment_join GROUP BY message_id");
  if (!joins) return store.lastError();
  int code = joins.step();
  for (; code == SQLITE_ROW; code = joins.step()) {
    const std::int64_t message = joins.integer(0);
    if (isOfReading(message)) countFiles(message, static_cast<std::uint64_t>(joins.integer(1)), words, count);
  }
  return code == SQLITE_DONE ? std::nullopt : std::optional(store.lastError());
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

RowCount countRows(const sqlite::Connection& store, const std::vector<std::int64_t>& chats, MessageWords* words) {
  RowCount count;
  MessageDates dates;
  std::vector<std::int64_t> messages;
  count.failure = dates.read(store);
  if (!count.failure) count.failure = readMessagesOf(store, chats, dates, messages);
  if (count.failure) return count;
  if (words) addAskedFor(words->facts(), dates, messages);
  count.rows = messages.size() + countFurtherAttachments(store, messages);
  findOddDates(store, dates, messages, count);
  if (words) {
    count.failure = countWordRows(store, messages, *words, count.words);
  } else {
    count.wordsBesideFiles = countWordsBesideFiles(store, chats);
  }
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

TextlessRows countSilentRows(const sqlite::Connection& store, const MessageWords& words,
                             const std::vector<std::int64_t>& chats) {
  TextlessRows count;
  const SilentRows& silent = words.silent();
  const std::uint64_t withoutBefore = silent.withoutContent, unreadableBefore = silent.unreadableBody;
  // Those that have no text have no attachments either, but for reactions, which are counted apart.
  const sqlite::Statement rows(
      store.get(),
      "SELECT m.text IS NULL FROM message m WHERE m.ROWID IN (SELECT message_id FROM chat_message_join "
      "WHERE chat_id IN (" +
          listOf(chats) + "))");
  if (!rows) {
    count.failure = store.lastError();
    return count;
  }
  int code = rows.step();
  while (code == SQLITE_ROW) code = rows.step();
  if (code != SQLITE_DONE) count.failure = store.lastError();
  count.withoutBody = silent.withoutContent - withoutBefore;
  count.withUnreadableBody = silent.unreadableBody - unreadableBefore;
  return count;
}

}  // namespace chatsum::device
