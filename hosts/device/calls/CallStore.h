// Reads the call lists of devices and Macs: CallHistory.storedata of iOS 8 and later, with its temporary twin of the
// same tables, and call_history.db of earlier systems. Columns are found by name, so that lists of every generation do.
// No state, any thread.
#pragma once

#include <cstdint>
#include <vector>

#include "hosts/device/calls/Call.h"
#include "hosts/device/stores/StoreProblem.h"
#include "hosts/device/stores/StoreSnapshot.h"

namespace chatsum::device {

struct StoredCalls {
  std::vector<Call> calls;  ///< in the order of the rows, without names
  std::uint64_t rows = 0;   ///< counted apart from the reading
};

/// Reads CallHistory.storedata or CallHistoryTemp.storedata. The problem when it is no such list or is damaged.
[[nodiscard]] StoreResult<StoredCalls> readCallStore(const StoreSnapshot& snapshot);

/// Reads call_history.db.
[[nodiscard]] StoreResult<StoredCalls> readOldCallStore(const StoreSnapshot& snapshot);

}  // namespace chatsum::device
