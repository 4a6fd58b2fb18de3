// Numbers of a call list, which may be missing or something else. No state, any thread.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

#include "platform/sqlite/Statement.h"

namespace chatsum::device {

/// The number in a column of the current row; none for NULL, texts, bytes and what is infinite.
[[nodiscard]] inline std::optional<double> storedReal(const sqlite::Statement& row, int column) {
  const int type = sqlite3_column_type(row.get(), column);
  if (type != SQLITE_INTEGER && type != SQLITE_FLOAT) return std::nullopt;
  const double number = row.real(column);
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

/// The same as a whole number; fractions are cut off.
[[nodiscard]] inline std::optional<std::int64_t> storedInteger(const sqlite::Statement& row, int column) {
  const int type = sqlite3_column_type(row.get(), column);
  if (type != SQLITE_INTEGER && type != SQLITE_FLOAT) return std::nullopt;
  return row.integer(column);
}

}  // namespace chatsum::device
