#include "hosts/device/calls/CallTables.h"

#include <algorithm>

#include "hosts/device/language/Say.h"

namespace chatsum::device {
namespace {

constexpr int kLongestValue = 1 << 20;     // bytes of a row that is read
constexpr std::uint64_t kBytesPerRow = 4;  // the shortest rows take more

/// Whether the name ends so, without regard to ASCII case; `ending` is in capitals.
bool endsWith(std::string_view name, std::string_view ending) {
  return name.size() >= ending.size() &&
         std::equal(ending.rbegin(), ending.rend(), name.rbegin(), [](char one, char other) {
           return one == (other >= 'a' && other <= 'z' ? other - 'a' + 'A' : other);
         });
}

}  // namespace

std::string quotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + "\"";
}

CallTables::CallTables(const sqlite::Connection& store) : store_(store), columns_(store.get()) {
  // Pictures and archives that a list may hold are of no use here.
  sqlite3_limit(store.get(), SQLITE_LIMIT_LENGTH, kLongestValue);
  const sqlite::Statement size(store.get(), "SELECT page_count * page_size FROM pragma_page_count, pragma_page_size");
  if (size && size.step() == SQLITE_ROW) mostRows_ = static_cast<std::uint64_t>(size.integer(0)) / kBytesPerRow;
}

std::string CallTables::selection(std::string_view table, std::span<const std::string_view> columns) {
  std::string sql = "SELECT ";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    sql.append(i ? ", " : "").append(columns_.has(table, columns[i]) ? columns[i] : "NULL");
  }
  return sql + " FROM main." + std::string(table);
}

std::vector<JoinTable> CallTables::joinTables() const {
  constexpr std::string_view kTable = "REMOTEPARTICIPANTHANDLES", kCall = "REMOTEPARTICIPANTCALLS";
  std::vector<JoinTable> tables;
  const sqlite::Statement names(store_.get(), "SELECT name FROM main.sqlite_master WHERE type = 'table' ORDER BY name");
  while (names && names.step() == SQLITE_ROW) {
    if (!endsWith(names.text(0), kTable)) continue;
    JoinTable table{std::string(names.text(0)), {}, {}};
    const sqlite::Statement columns(store_.get(), "SELECT name FROM pragma_table_info(?1, 'main')");
    if (!columns) break;
    columns.bind(1, std::string_view(table.name));
    while (columns.step() == SQLITE_ROW) {
      if (endsWith(columns.text(0), kCall)) table.callColumn = columns.text(0);
      if (endsWith(columns.text(0), kTable)) table.personColumn = columns.text(0);
    }
    if (!table.callColumn.empty() && !table.personColumn.empty()) tables.push_back(std::move(table));
  }
  return tables;
}

std::optional<std::string> CallTables::forEachRow(const std::string& sql,
                                                  const std::function<void(const sqlite::Statement&)>& take) const {
  const sqlite::Statement rows(store_.get(), sql);
  if (!rows) return store_.lastError();
  std::uint64_t count = 0;
  int code = rows.step();
  for (; code == SQLITE_ROW; code = rows.step()) {
    if (++count > mostRows_) return say("it has more rows than the file has room for");
    take(rows);
  }
  return code == SQLITE_DONE ? std::nullopt : std::optional(store_.lastError());
}

StoreResult<StoredCalls> readCallTable(const StoreSnapshot& snapshot, const StoreKind& kind, const CallTable& table) {
  sqlite3* handle = nullptr;
  const int code = snapshot.open(&handle);
  const sqlite::Connection store(handle);
  const auto damaged = [&](const std::string& reason) {
    return StoreProblem{
        say("'{0}' is damaged: not all calls can be read ({1}); copy it again from the device or backup.",
            snapshot.shownPath(), reason)};
  };
  if (code != SQLITE_OK) return damaged(sqlite3_errstr(code));
  if (auto problem = checkStore(handle, snapshot, kind)) return *problem;

  CallTables tables(store);
  StoredCalls stored;
  const auto count = [&](const sqlite::Statement&) { ++stored.rows; };
  if (auto failure = tables.forEachRow("SELECT 1 FROM main." + std::string(table.name), count))
    return damaged(*failure);
  if (table.prepare) {
    if (auto failure = table.prepare(tables)) return damaged(*failure);
  }
  const auto take = [&](const sqlite::Statement& row) { stored.calls.push_back(table.callOf(row)); };
  if (auto failure = tables.forEachRow(tables.selection(table.name, table.columns), take)) return damaged(*failure);
  return stored;
}

}  // namespace chatsum::device
