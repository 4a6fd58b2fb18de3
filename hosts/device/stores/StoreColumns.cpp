#include "hosts/device/stores/StoreColumns.h"

#include <algorithm>

#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

std::string lowerCase(std::string_view name) {
  std::string lower(name);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower;
}

}  // namespace

StoreColumns::StoreColumns(sqlite3* connection) : connection_(connection) {
  const sqlite::Statement statement(
      connection,
      "SELECT name FROM main.sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'");
  while (statement && statement.step() == SQLITE_ROW) tables_.insert(lowerCase(statement.text(0)));
}

bool StoreColumns::has(std::string_view table) const { return tables_.find(lowerCase(table)) != tables_.end(); }

bool StoreColumns::has(std::string_view table, std::string_view column) {
  if (!has(table)) return false;
  const auto [entry, isNew] = columns_.try_emplace(lowerCase(table));
  if (isNew) {
    const sqlite::Statement statement(connection_, "SELECT name FROM pragma_table_info(?1, 'main')");
    statement.bind(1, table);
    while (statement.step() == SQLITE_ROW) entry->second.insert(lowerCase(statement.text(0)));
  }
  return entry->second.find(lowerCase(column)) != entry->second.end();
}

}  // namespace chatsum::device
