// Finds single rows of a Messages store quickly in every store: by its indexes, or by an index of our own where it has
// none. Each belongs to one connection and its thread; what they make is temporary and goes with the connection.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {

/// Whether a table of the store has an index that begins with the column.
[[nodiscard]] bool hasIndexOn(const sqlite::Connection& store, std::string_view table, std::string_view column);

/// Messages by their GUIDs.
class MessageGuids {
 public:
  explicit MessageGuids(const sqlite::Connection& store);
  /// The ROWID of the message, none when there is no such message.
  [[nodiscard]] std::optional<std::int64_t> find(std::string_view guid) const;

 private:
  sqlite::Statement find_;
};

}  // namespace chatsum::device
