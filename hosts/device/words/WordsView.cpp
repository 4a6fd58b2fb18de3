#include "hosts/device/words/WordsView.h"

#include <exception>
#include <string>
#include <string_view>

#include "hosts/device/stores/StoreColumns.h"
#include "hosts/device/words/FilesTable.h"
#include "hosts/device/words/Orphans.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

using SharedWords = std::shared_ptr<MessageWords>;

MessageWords& wordsOf(sqlite3_context* context) { return **static_cast<SharedWords*>(sqlite3_user_data(context)); }

// chatsum_words(ROWID): the message in words, NULL when it has none.
void wordsFunction(sqlite3_context* context, int /*argumentCount*/, sqlite3_value** arguments) {
  try {
    const auto text = wordsOf(context).textOf(sqlite3_value_int64(arguments[0]));
    if (text) sqlite3_result_text64(context, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  } catch (const std::exception&) {
    sqlite3_result_error_nomem(context);
  }
}

// chatsum_marked(ROWID): 1 for a message that has more to say than its columns show.
void markedFunction(sqlite3_context* context, int /*argumentCount*/, sqlite3_value** arguments) {
  sqlite3_result_int(context, wordsOf(context).facts().marked.contains(sqlite3_value_int64(arguments[0])) ? 1 : 0);
}

void releaseWords(void* words) { delete static_cast<SharedWords*>(words); }

bool addFunction(sqlite3* connection, const char* name, const SharedWords& words,
                 void (*function)(sqlite3_context*, int, sqlite3_value**)) {
  return sqlite3_create_function_v2(connection, name, 1, SQLITE_UTF8 | SQLITE_INNOCUOUS, new SharedWords(words),
                                    function, nullptr, nullptr,
                                    releaseWords) == SQLITE_OK;  // released by SQLite on failure, too
}

/// True in SQL for messages that are not just their text. Columns that the store lacks cost nothing. Those that were
/// taken back as a whole have neither text nor body, so they come to be asked for anyway.
std::string testForWords(StoreColumns& columns, const ReadingFacts& facts) {
  std::string test = "chatsum_marked(ROWID)";
  const auto add = [&](const char* column, std::string_view condition) {
    if (columns.has("message", column) && !facts.markedColumns.contains(column)) {
      test.append(" OR ").append(column).append(condition);
    }
  };
  for (const char* const number : {"cache_has_attachments", "item_type", "error", "date_edited", "schedule_state"}) {
    add(number, " <> 0");
  }
  for (const char* const text : {"thread_originator_guid", "balloon_bundle_id", "expressive_send_style_id"}) {
    add(text, " IS NOT NULL");
  }
  add("subject", " <> ''");
  return test;
}

bool execute(sqlite3* connection, const std::string& sql) {
  return sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool fillOrphans(sqlite3* connection, const ReadingFacts& facts) {
  if (!execute(connection, "CREATE TEMP TABLE chatsum_orphans (message_id INTEGER PRIMARY KEY)")) return false;
  const sqlite::Statement insert(connection, "INSERT INTO temp.chatsum_orphans VALUES (?1)");
  for (const std::int64_t orphan : facts.orphans) {
    insert.reset();
    insert.bind(1, orphan);
    if (insert.step() != SQLITE_DONE) return false;
  }
  return true;
}

/// Adds what was asked for beside the messages that stand in chats.
bool addMessages(sqlite3* connection, const ReadingFacts& facts) {
  std::string joins = "SELECT chat_id, message_id FROM main.chat_message_join";
  if (facts.servesDeleted) {
    joins += " UNION ALL SELECT chat_id, message_id FROM main.chat_recoverable_message_join";
  }
  if (!facts.orphans.empty()) {
    const std::string chat = std::to_string(kOrphanChat);
    if (!fillOrphans(connection, facts)) return false;
    joins += " UNION ALL SELECT " + chat + ", message_id FROM temp.chatsum_orphans";
    if (!execute(connection, "CREATE TEMP VIEW chat AS SELECT ROWID AS ROWID, guid FROM main.chat UNION ALL SELECT " +
                                 chat + ", '" + kOrphanChatGuid + "'")) {
      return false;
    }
  }
  const bool isPlain = !facts.servesDeleted && facts.orphans.empty();
  return isPlain || execute(connection, "CREATE TEMP VIEW chat_message_join AS " + joins);
}

}  // namespace

bool WordsView::install(sqlite3* connection, const std::shared_ptr<MessageWords>& words,
                        const std::shared_ptr<BodyCounters>& counters, const std::string& flag) {
  StoreColumns columns(connection);
  const bool hasFiles =
      columns.has("message_attachment_join", "message_id") && columns.has("message_attachment_join", "attachment_id");
  MessageView::Options options;
  options.words = testForWords(columns, words->facts());
  options.flag = flag;
  return addFunction(connection, "chatsum_words", words, wordsFunction) &&
         addFunction(connection, "chatsum_marked", words, markedFunction) && addMessages(connection, words->facts()) &&
         MessageView::install(connection, options, counters) && (!hasFiles || installFilesTable(connection, words));
}

}  // namespace chatsum::device
