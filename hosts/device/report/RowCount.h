// Counts a conversation's rows in the store by itself, so that what the library reads can be checked against it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "hosts/device/stores/MessageView.h"
#include "platform/foundation/Date.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

struct RowCount {
  std::uint64_t rows = 0;            ///< messages joined with their attachments
  std::uint64_t withoutText = 0;     ///< of these: neither text nor body
  std::uint64_t unreadableBody = 0;  ///< of these: a body in which no text was found
  /// Messages whose date the library cannot tell rightly, by GUID: the true date, none without one.
  std::unordered_map<std::string, std::optional<Date>> oddDates;
  std::optional<std::string> failure;  ///< why not all rows could be read
};

/// Reads every row of the chats (ROWIDs). `store` is a connection that MessageView prepared with `counters` and that
/// nothing else uses meanwhile. One thread.
[[nodiscard]] RowCount countRows(const sqlite::Connection& store, const BodyCounters& counters,
                                 const std::vector<std::int64_t>& chats);

}  // namespace chatsum::device
