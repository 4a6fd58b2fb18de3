// Which tables and columns a store has. Stores of every generation differ, so nothing is taken for granted.
// One per connection and thread; the connection must outlive it.
#pragma once

#include <sqlite3.h>

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace chatsum::device {

class StoreColumns {
 public:
  explicit StoreColumns(sqlite3* connection);

  /// Whether the store itself (not a temporary view beside it) has the table. Names are compared as SQLite does,
  /// without regard to ASCII case.
  [[nodiscard]] bool has(std::string_view table) const;
  [[nodiscard]] bool has(std::string_view table, std::string_view column);
  /// Whether there is any table at all.
  [[nodiscard]] bool hasAnyTable() const { return !tables_.empty(); }

 private:
  sqlite3* connection_;
  std::set<std::string, std::less<>> tables_;                                       // lower case
  std::map<std::string, std::set<std::string, std::less<>>, std::less<>> columns_;  // read once per table
};

}  // namespace chatsum::device
