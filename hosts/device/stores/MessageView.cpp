#include "hosts/device/stores/MessageView.h"

#include <exception>
#include <string>
#include <string_view>

#include "hosts/device/body/TypedStream.h"
#include "hosts/device/stores/StoreColumns.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

using SharedCounters = std::shared_ptr<BodyCounters>;

// Seconds stay below this until the year 5170, and nanoseconds are above it 100 seconds after the epoch.
constexpr std::string_view kMostSeconds = "100000000000";

void count(std::atomic<std::uint64_t>& counter, std::uint64_t by = 1) {
  counter.fetch_add(by, std::memory_order_relaxed);
}

// chatsum_body(attributedBody): the body's text, NULL when there is none.
void bodyFunction(sqlite3_context* context, int /*argumentCount*/, sqlite3_value** arguments) {
  BodyCounters& counters = **static_cast<SharedCounters*>(sqlite3_user_data(context));
  const auto* bytes = static_cast<const char*>(sqlite3_value_blob(arguments[0]));
  const int length = sqlite3_value_bytes(arguments[0]);
  if (!bytes || length <= 0) return count(counters.absent);  // a function that sets no result gives NULL
  try {
    const BodyText body = decodeBody({bytes, static_cast<std::size_t>(length)});
    counters.add(body);
    if (body.status == BodyStatus::kUndecodable) return;
    sqlite3_result_text64(context, body.text.data(), body.text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  } catch (const std::exception&) {
    sqlite3_result_error_nomem(context);
  }
}

void releaseCounters(void* counters) { delete static_cast<SharedCounters*>(counters); }

bool registerBodyFunction(sqlite3* connection, const SharedCounters& counters) {
  auto* const shared = new SharedCounters(counters ? counters : std::make_shared<BodyCounters>());
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  return sqlite3_create_function_v2(connection, "chatsum_body", 1, kFlags, shared, bodyFunction, nullptr, nullptr,
                                    releaseCounters) == SQLITE_OK;  // released by SQLite on failure, too
}

bool answersRow(sqlite3* connection, const std::string& sql) {
  const sqlite::Statement statement(connection, sql);
  return statement && statement.step() == SQLITE_ROW;
}

// Without an index on the date, asking would read the whole table; then every row is looked at when it is read.
bool mayHoldSeconds(sqlite3* connection) {
  const bool hasIndex = answersRow(connection,
                                   "SELECT 1 FROM pragma_index_list('message', 'main') AS l, "
                                   "pragma_index_info(l.name, 'main') AS i "
                                   "WHERE l.partial = 0 AND i.seqno = 0 AND i.name = 'date' COLLATE NOCASE");
  if (!hasIndex) return true;
  // In two halves, so that any number of rows without a date (0) is stepped over by the index.
  const std::string most(kMostSeconds);
  return answersRow(connection, "SELECT 1 FROM main.message WHERE date > 0 AND date <= " + most + " LIMIT 1") ||
         answersRow(connection, "SELECT 1 FROM main.message WHERE date < 0 AND date >= -" + most + " LIMIT 1");
}

std::string textColumn(StoreColumns& columns, const std::string& words) {
  const bool hasText = columns.has("message", "text");
  const bool hasBody = columns.has("message", "attributedBody");
  if (!words.empty()) {
    const std::string own = hasText ? "text, " : "", body = hasBody ? "chatsum_body(attributedBody), " : "";
    return "CASE WHEN " + words + " THEN chatsum_words(ROWID) ELSE coalesce(" + own + body +
           "chatsum_words(ROWID), NULL) END";
  }
  if (hasText && hasBody) return "coalesce(text, chatsum_body(attributedBody))";
  if (hasBody) return "chatsum_body(attributedBody)";
  return hasText ? "text" : "NULL";
}

std::string dateColumn(sqlite3* connection, StoreColumns& columns) {
  if (!columns.has("message", "date")) return "NULL";
  if (!mayHoldSeconds(connection)) return "date";
  const std::string most(kMostSeconds);
  return "CASE WHEN date BETWEEN -" + most + " AND " + most + " THEN date * 1000000000 ELSE date END";
}

// Every column is a plain expression over one table, so SQLite merges the view into the statement: rows are found by
// their ROWID as without it, and an unused column costs nothing.
std::string viewSql(sqlite3* connection, StoreColumns& columns, const std::string& words) {
  std::string sql = "CREATE TEMP VIEW message AS SELECT ROWID AS ROWID";
  const auto add = [&sql](const std::string& expression, std::string_view name) {
    sql.append(", ").append(expression).append(" AS ").append(name);
  };
  const auto addOwn = [&](std::string_view name, const char* otherwise) {
    add(columns.has("message", name) ? std::string(name) : otherwise, name);
  };
  addOwn("guid", "NULL");
  add(textColumn(columns, words), "text");
  add(dateColumn(connection, columns), "date");
  addOwn("handle_id", "0");
  addOwn("is_from_me", "0");
  addOwn("cache_has_attachments", "0");
  return sql + " FROM main.message";
}

bool execute(sqlite3* connection, const std::string& sql) {
  return sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

// A store without readable attachments gets empty tables of those names.
bool completeAttachmentTables(sqlite3* connection, StoreColumns& columns) {
  const bool hasJoin =
      columns.has("message_attachment_join", "message_id") && columns.has("message_attachment_join", "attachment_id");
  const bool hasAttachment = columns.has("attachment", "filename");
  return (hasJoin || execute(connection,
                             "CREATE TEMP TABLE message_attachment_join "
                             "(message_id INTEGER, attachment_id INTEGER, PRIMARY KEY (message_id, attachment_id))")) &&
         (hasAttachment ||
          execute(connection, "CREATE TEMP TABLE attachment (ROWID INTEGER PRIMARY KEY, filename TEXT)"));
}

}  // namespace

void BodyCounters::add(const BodyText& body) {
  switch (body.status) {
    case BodyStatus::kDecoded:
      count(decoded);
      break;
    case BodyStatus::kRecovered:
      count(recovered);
      break;
    case BodyStatus::kUndecodable:
      count(undecodable);
      break;
  }
  if (body.replacedSequences > 0) count(replacedSequences, static_cast<std::uint64_t>(body.replacedSequences));
}

bool MessageView::install(sqlite3* connection, const Options& options, const std::shared_ptr<BodyCounters>& counters) {
  StoreColumns columns(connection);
  if (!completeAttachmentTables(connection, columns)) return false;
  if (options.plain) return true;
  if (!registerBodyFunction(connection, counters) ||
      !execute(connection, viewSql(connection, columns, options.words))) {
    return false;
  }
  // SQLite takes a view unseen; only asking it shows that it stands.
  return static_cast<bool>(sqlite::Statement(connection, "SELECT ROWID, text, date FROM message"));
}

}  // namespace chatsum::device
