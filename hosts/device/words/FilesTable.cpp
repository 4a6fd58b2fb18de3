#include "hosts/device/words/FilesTable.h"

#include <cstdint>
#include <exception>
#include <optional>
#include <vector>

namespace chatsum::device {
namespace {

using SharedWords = std::shared_ptr<MessageWords>;

enum Column { kMessage, kAttachment };

struct Table : sqlite3_vtab {
  SharedWords words;
};

struct Cursor : sqlite3_vtab_cursor {
  std::int64_t message = 0;
  std::size_t place = 0;
  std::vector<std::optional<std::int64_t>> rows;
};

int connectTable(sqlite3* connection, void* words, int, const char* const*, sqlite3_vtab** table, char**) {
  const int code = sqlite3_declare_vtab(connection, "CREATE TABLE x(message_id INTEGER, attachment_id INTEGER)");
  if (code != SQLITE_OK) return code;
  try {
    auto* const made = new Table{};
    made->words = *static_cast<SharedWords*>(words);
    *table = made;
  } catch (const std::exception&) {
    return SQLITE_NOMEM;
  }
  return SQLITE_OK;
}

int disconnectTable(sqlite3_vtab* table) {
  delete static_cast<Table*>(table);
  return SQLITE_OK;
}

// The statements always look for the rows of one message; a plan that does not is refused.
int chooseIndex(sqlite3_vtab*, sqlite3_index_info* info) {
  for (int i = 0; i < info->nConstraint; ++i) {
    const auto& constraint = info->aConstraint[i];
    if (constraint.iColumn != kMessage || constraint.op != SQLITE_INDEX_CONSTRAINT_EQ || !constraint.usable) continue;
    info->aConstraintUsage[i].argvIndex = 1;
    info->aConstraintUsage[i].omit = 1;
    info->estimatedCost = 2;
    info->estimatedRows = 1;
    return SQLITE_OK;
  }
  return SQLITE_CONSTRAINT;
}

int openCursor(sqlite3_vtab*, sqlite3_vtab_cursor** cursor) {
  try {
    *cursor = new Cursor{};
  } catch (const std::exception&) {
    return SQLITE_NOMEM;
  }
  return SQLITE_OK;
}

int closeCursor(sqlite3_vtab_cursor* cursor) {
  delete static_cast<Cursor*>(cursor);
  return SQLITE_OK;
}

int beginRows(sqlite3_vtab_cursor* base, int, const char*, int, sqlite3_value** arguments) {
  auto& cursor = *static_cast<Cursor*>(base);
  MessageWords& words = *static_cast<Table*>(base->pVtab)->words;
  cursor.message = sqlite3_value_int64(arguments[0]);
  cursor.place = 0;
  cursor.rows.clear();
  if (!words.facts().withFiles.contains(cursor.message)) return SQLITE_OK;
  try {
    cursor.rows = words.rowsOf(cursor.message);
  } catch (const std::exception&) {
    return SQLITE_NOMEM;
  }
  return SQLITE_OK;
}

int nextRow(sqlite3_vtab_cursor* cursor) {
  ++static_cast<Cursor*>(cursor)->place;
  return SQLITE_OK;
}

int isAtEnd(sqlite3_vtab_cursor* base) {
  const auto& cursor = *static_cast<Cursor*>(base);
  return cursor.place >= cursor.rows.size() ? 1 : 0;
}

int answerColumn(sqlite3_vtab_cursor* base, sqlite3_context* context, int column) {
  const auto& cursor = *static_cast<Cursor*>(base);
  if (column == kMessage) {
    sqlite3_result_int64(context, cursor.message);
  } else if (const auto& attachment = cursor.rows[cursor.place]) {
    sqlite3_result_int64(context, *attachment);
  }
  return SQLITE_OK;  // without a result it is NULL
}

int answerRowid(sqlite3_vtab_cursor* cursor, sqlite3_int64* row) {
  *row = static_cast<sqlite3_int64>(static_cast<Cursor*>(cursor)->place);
  return SQLITE_OK;
}

sqlite3_module makeModule() {
  sqlite3_module module{};
  module.xCreate = connectTable;
  module.xConnect = connectTable;
  module.xBestIndex = chooseIndex;
  module.xDisconnect = disconnectTable;
  module.xDestroy = disconnectTable;
  module.xOpen = openCursor;
  module.xClose = closeCursor;
  module.xFilter = beginRows;
  module.xNext = nextRow;
  module.xEof = isAtEnd;
  module.xColumn = answerColumn;
  module.xRowid = answerRowid;
  return module;
}

void releaseWords(void* words) { delete static_cast<SharedWords*>(words); }

}  // namespace

bool installFilesTable(sqlite3* connection, const std::shared_ptr<MessageWords>& words) {
  static const sqlite3_module kModule = makeModule();
  auto* const shared = new SharedWords(words);
  return sqlite3_create_module_v2(connection, "chatsum_files", &kModule, shared, releaseWords) == SQLITE_OK &&
         sqlite3_exec(connection, "CREATE VIRTUAL TABLE temp.message_attachment_join USING chatsum_files", nullptr,
                      nullptr, nullptr) == SQLITE_OK;
}

}  // namespace chatsum::device
