// Says in one sentence why a database is not the store it is taken for. No state, any thread.
#pragma once

#include <sqlite3.h>

#include <optional>
#include <string_view>
#include <vector>

#include "hosts/device/stores/StoreProblem.h"
#include "hosts/device/stores/StoreSnapshot.h"

namespace chatsum::device {

/// One table without which a store cannot be read, and the columns that reading needs of it.
struct NeededTable {
  std::string_view name;
  std::vector<std::string_view> columns;
};

struct StoreKind {
  std::string_view name;  ///< with its article, as in "a Messages store"
  std::vector<NeededTable> tables;
};

/// sms.db and chat.db from iOS 6 on.
[[nodiscard]] const StoreKind& messagesStore();

/// Checks the store behind `connection`, which `snapshot` opened. Costs a few milliseconds whatever the store's size:
/// the rows themselves are not looked at.
[[nodiscard]] std::optional<StoreProblem> checkStore(sqlite3* connection, const StoreSnapshot& snapshot,
                                                     const StoreKind& kind);

}  // namespace chatsum::device
