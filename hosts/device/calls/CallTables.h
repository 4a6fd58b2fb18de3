// The tables of a call list and what may be read of them. Lists of every generation differ, and a damaged or made-up
// file must not keep a reader for ever. One per connection and thread; the connection must outlive it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/calls/CallStore.h"
#include "hosts/device/stores/StoreCheck.h"
#include "hosts/device/stores/StoreColumns.h"
#include "hosts/device/stores/StoreSnapshot.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {

/// A table that joins calls with people. Systems number it and its columns by their own count.
struct JoinTable {
  std::string name, callColumn, personColumn;
};

class CallTables {
 public:
  explicit CallTables(const sqlite::Connection& store);

  [[nodiscard]] bool has(std::string_view table) const { return columns_.has(table); }

  /// "SELECT A, NULL, C FROM TABLE" for the columns A, B, C of which the table has no B. The names are the program's.
  [[nodiscard]] std::string selection(std::string_view table, std::span<const std::string_view> columns);

  /// The tables whose name ends with REMOTEPARTICIPANTHANDLES and that have both columns.
  [[nodiscard]] std::vector<JoinTable> joinTables() const;

  /// Calls `take` with each row. Answers the reason when not all rows can be read, which is also when there are more
  /// than the file has room for.
  [[nodiscard]] std::optional<std::string> forEachRow(const std::string& sql,
                                                      const std::function<void(const sqlite::Statement&)>& take) const;

 private:
  const sqlite::Connection& store_;
  StoreColumns columns_;
  std::uint64_t mostRows_ = 0;
};

/// How the calls of one kind of list are read.
struct CallTable {
  std::string_view name;
  std::span<const std::string_view> columns;  ///< those of the rows that `callOf` gets, in this order
  /// Reads what stands in other tables. Answers the reason when that cannot be done. May be empty.
  std::function<std::optional<std::string>(CallTables&)> prepare;
  std::function<Call(const sqlite::Statement& row)> callOf;
};

/// Checks that the store is of the kind, counts its rows and reads them.
[[nodiscard]] StoreResult<StoredCalls> readCallTable(const StoreSnapshot& snapshot, const StoreKind& kind,
                                                     const CallTable& table);

/// A name out of a store as it stands in a statement.
[[nodiscard]] std::string quotedName(std::string_view name);

}  // namespace chatsum::device
