// Helpers of the tests of generated devices: temporary folders, single answers of a store, whole dumps.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>

#include "platform/fake/TemporaryFolder.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {

/// A folder of its own, removed with everything in it; `path` as the file system library knows it.
class TemporaryFolder {
 public:
  [[nodiscard]] std::filesystem::path path() const { return folder_.path(); }

 private:
  platform::fake::TemporaryFolder folder_;
};

inline sqlite::Connection openStore(const std::filesystem::path& path) {
  sqlite3* handle = nullptr;
  sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr);
  return sqlite::Connection(handle);
}

/// All rows of a query, columns joined by "|", a line each; the error in place of the rows when there is one.
inline std::string rowsOf(const sqlite::Connection& store, std::string_view sql) {
  std::string rows;
  const sqlite::Statement statement(store.get(), sql);
  if (!statement) return "error: " + store.lastError();
  while (statement.step() == SQLITE_ROW) {
    for (int column = 0; column < sqlite3_column_count(statement.get()); ++column) {
      if (column > 0) rows += '|';
      rows += statement.isNull(column) ? std::string_view("NULL") : statement.text(column);
    }
    rows += '\n';
  }
  return rows;
}

/// The first column of the first row as a number.
inline std::int64_t numberOf(const sqlite::Connection& store, std::string_view sql) {
  const sqlite::Statement statement(store.get(), sql);
  if (!statement || statement.step() != SQLITE_ROW) return -1;
  return statement.integer(0);
}

/// Every row of every table.
inline std::string dumpOf(const std::filesystem::path& path) {
  const sqlite::Connection store = openStore(path);
  std::string dump = rowsOf(store, "SELECT type, name, sql FROM sqlite_master ORDER BY type, name");
  const sqlite::Statement tables(store.get(), "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
  while (tables.step() == SQLITE_ROW) {
    dump += rowsOf(store, "SELECT rowid, * FROM \"" + std::string(tables.text(0)) + "\" ORDER BY rowid");
  }
  return dump;
}

inline std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// The bytes of every file below the folder but the stores', by relative path.
inline std::map<std::string, std::string> filesBelow(const std::filesystem::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file() || entry.path().filename().string().starts_with("sms.db")) continue;
    if (entry.path().filename().string().starts_with("AddressBook.sqlitedb")) continue;
    files[std::filesystem::relative(entry.path(), folder).string()] = bytesOf(entry.path());
  }
  return files;
}

}  // namespace chatsum::device
