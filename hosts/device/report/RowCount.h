// Counts a conversation's rows in the store by itself, so that what the library reads can be checked against it.
// Each operation has its connection to itself and runs on one thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "hosts/device/stores/MessageView.h"
#include "platform/foundation/Date.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

struct RowCount {
  std::uint64_t rows = 0;              ///< messages joined with their attachments, with text or without
  std::uint64_t wordsBesideFiles = 0;  ///< messages whose words give way to the paths of their attachments
  /// Messages whose date the library cannot tell rightly, by GUID: the true date, none without one.
  std::unordered_map<std::string, std::optional<Date>> oddDates;
  std::optional<std::string> failure;  ///< why not all could be counted
};

/// Counts from the store's indexes where it has them, so a large conversation costs little. `chats` are ROWIDs.
[[nodiscard]] RowCount countRows(const sqlite::Connection& store, const std::vector<std::int64_t>& chats);

struct TextlessRows {
  std::uint64_t withoutBody = 0;         ///< neither text nor body
  std::uint64_t withUnreadableBody = 0;  ///< a body in which no text was found
  std::optional<std::string> failure;    ///< why not all rows could be read
};

/// Looks at every row. `store` is a connection that MessageView prepared with `counters`.
[[nodiscard]] TextlessRows countTextlessRows(const sqlite::Connection& store, const BodyCounters& counters,
                                             const std::vector<std::int64_t>& chats);

}  // namespace chatsum::device
