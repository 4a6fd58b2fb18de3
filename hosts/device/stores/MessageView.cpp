#include "hosts/device/stores/MessageView.h"

#include <algorithm>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

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

/// What the functions of a connection know.
struct Functions {
  SharedCounters counters;
  bool hasWords = false;  ///< texts that cannot stand as they are go to `chatsum_words`
};

const Functions& functionsOf(sqlite3_context* context) {
  return *static_cast<const Functions*>(sqlite3_user_data(context));
}

std::string_view textOf(sqlite3_value* value) {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return bytes ? std::string_view(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value))) : std::string_view();
}

void answer(sqlite3_context* context, const std::string& text) {
  sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

/// Asked for every message, so this is a quick look.
bool isOdd(std::string_view text, bool hasWords) {
  if (text.find('\0') != std::string_view::npos) return true;
  constexpr std::string_view kFileMark = "\xEF\xBF\xBC";  // words name the file that it stands for
  return hasWords && (text.find('[') != std::string_view::npos || text.find(kFileMark) != std::string_view::npos);
}

// chatsum_odd(text): 1 for a text that cannot stand as it is; an empty one may be that of the body.
void oddFunction(sqlite3_context* context, int /*argumentCount*/, sqlite3_value** arguments) {
  if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) return sqlite3_result_int(context, 0);
  const std::string_view text = textOf(arguments[0]);
  sqlite3_result_int(context, text.empty() || isOdd(text, functionsOf(context).hasWords) ? 1 : 0);
}

void answerBody(sqlite3_context* context, std::string_view bytes) {
  const Functions& functions = functionsOf(context);
  BodyText body = decodeBody(bytes);
  const bool isForWords = functions.hasWords && isOdd(body.text, true);
  if (!isForWords) functions.counters->add(body);  // else it is counted there
  if (isForWords || body.status == BodyStatus::kUndecodable) return;
  replaceNuls(body.text);
  answer(context, body.text);
}

// chatsum_body(attributedBody): the body's text, NULL when there is none, and for words where it cannot stand as it is.
void bodyFunction(sqlite3_context* context, int /*argumentCount*/, sqlite3_value** arguments) {
  const auto* bytes = static_cast<const char*>(sqlite3_value_blob(arguments[0]));
  const int length = sqlite3_value_bytes(arguments[0]);
  // A function that sets no result gives NULL.
  if (!bytes || length <= 0) return count(functionsOf(context).counters->absent);
  try {
    answerBody(context, {bytes, static_cast<std::size_t>(length)});
  } catch (const std::exception&) {
    sqlite3_result_error_nomem(context);
  }
}

// chatsum_mended(text, attributedBody): what an odd text shows where there are no words.
void mendedFunction(sqlite3_context* context, int /*argumentCount*/, sqlite3_value** arguments) {
  try {
    std::string text(textOf(arguments[0]));
    const auto* body = static_cast<const char*>(sqlite3_value_blob(arguments[1]));
    const int length = sqlite3_value_bytes(arguments[1]);
    if (text.empty() && body && length > 0) return answerBody(context, {body, static_cast<std::size_t>(length)});
    replaceNuls(text);
    answer(context, text);
  } catch (const std::exception&) {
    sqlite3_result_error_nomem(context);
  }
}

void releaseFunctions(void* functions) { delete static_cast<Functions*>(functions); }

bool registerFunctions(sqlite3* connection, const Functions& functions) {
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  const auto add = [&](const char* name, int arguments, void (*function)(sqlite3_context*, int, sqlite3_value**)) {
    return sqlite3_create_function_v2(connection, name, arguments, kFlags, new Functions(functions), function, nullptr,
                                      nullptr, releaseFunctions) == SQLITE_OK;  // released by SQLite on failure, too
  };
  return add("chatsum_odd", 1, oddFunction) && add("chatsum_body", 1, bodyFunction) &&
         add("chatsum_mended", 2, mendedFunction);
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
    return "CASE WHEN " + words + (hasText ? " OR chatsum_odd(text)" : "") +
           " THEN chatsum_words(ROWID) ELSE coalesce(" + own + body + "chatsum_words(ROWID), NULL) END";
  }
  if (!hasText) return hasBody ? "chatsum_body(attributedBody)" : "NULL";
  return std::string("CASE WHEN chatsum_odd(text) THEN chatsum_mended(text, ") +
         (hasBody ? "attributedBody) ELSE coalesce(text, chatsum_body(attributedBody)) END" : "NULL) ELSE text END");
}

std::string dateColumn(sqlite3* connection, StoreColumns& columns) {
  if (!columns.has("message", "date")) return "NULL";
  if (!mayHoldSeconds(connection)) return "date";
  const std::string most(kMostSeconds);
  return "CASE WHEN date BETWEEN -" + most + " AND " + most + " THEN date * 1000000000 ELSE date END";
}

// Every column is a plain expression over one table, so SQLite merges the view into the statement: rows are found by
// their ROWID as without it, and an unused column costs nothing.
std::string viewSql(sqlite3* connection, StoreColumns& columns, const MessageView::Options& options) {
  std::string sql = "CREATE TEMP VIEW message AS SELECT ROWID AS ROWID";
  const auto add = [&sql](const std::string& expression, std::string_view name) {
    sql.append(", ").append(expression).append(" AS ").append(name);
  };
  const auto addOwn = [&](std::string_view name, const char* otherwise) {
    add(columns.has("message", name) ? std::string(name) : otherwise, name);
  };
  addOwn("guid", "NULL");
  add(textColumn(columns, options.words), "text");
  add(dateColumn(connection, columns), "date");
  addOwn("handle_id", "0");
  addOwn("is_from_me", "0");
  if (options.flag.empty()) {
    addOwn("cache_has_attachments", "0");
  } else {
    add(options.flag, "cache_has_attachments");
  }
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

/// Readers put "User" for every "~" of a path that begins with one, so that a name with another in it ("IMG_00~1.png")
/// would be that of no file. Few stores have such a name, and only these pay for the view.
bool keepTildes(sqlite3* connection, StoreColumns& columns) {
  constexpr const char* kTest = "filename LIKE '~%~%'";
  if (!columns.has("attachment", "filename") ||
      !answersRow(connection, std::string("SELECT 1 FROM main.attachment WHERE ") + kTest + " LIMIT 1")) {
    return true;
  }
  return execute(connection, std::string("CREATE TEMP VIEW attachment AS SELECT ROWID AS ROWID, CASE WHEN ") + kTest +
                                 " THEN 'User' || substr(filename, 2) ELSE filename END AS filename FROM "
                                 "main.attachment");
}

}  // namespace

void replaceNuls(std::string& text) {
  std::size_t nul = text.find('\0');
  if (nul == std::string::npos) return;
  std::string shown;
  for (std::size_t from = 0;; nul = text.find('\0', from)) {
    shown.append(text, from, std::min(nul, text.size()) - from);
    if (nul == std::string::npos) break;
    shown += "␀";
    from = nul + 1;
  }
  text = std::move(shown);
}

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
  const Functions functions{counters ? counters : std::make_shared<BodyCounters>(), !options.words.empty()};
  if (!registerFunctions(connection, functions) || !keepTildes(connection, columns) ||
      !execute(connection, viewSql(connection, columns, options))) {
    return false;
  }
  // SQLite takes a view unseen; only asking it shows that it stands.
  return static_cast<bool>(sqlite::Statement(connection, "SELECT ROWID, text, date FROM message"));
}

}  // namespace chatsum::device
