// Walking through the rows of a statement to its end, whatever the store is like.
#pragma once

#include <sqlite3.h>

#include <cstdint>

#include "platform/sqlite/Statement.h"

namespace chatsum {

/// Calls `take()` for every row while the statement stands on it. A step that fails counts as one row without values.
/// SQLite then begins the statement anew, so the rows already taken are passed over; when the same place fails again
/// the walk ends and the answer is false: a damaged store must not hold anybody for ever.
template <class Take>
[[nodiscard]] bool forEachRow(const sqlite::Statement& statement, Take take) {
  std::uint64_t taken = 0, toPassOver = 0;
  bool failedBefore = false;
  for (int code = statement.step(); code != SQLITE_DONE; code = statement.step()) {
    if (code != SQLITE_ROW) {
      if (failedBefore) return false;
      failedBefore = true;
      toPassOver = taken;
    } else if (toPassOver > 0) {
      --toPassOver;
    } else {
      failedBefore = false;
      ++taken;
      take();
    }
  }
  return true;
}

}  // namespace chatsum
