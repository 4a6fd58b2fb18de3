// Steps a statement on a thread of its own, some rows ahead of the one who uses them: SQLite and the making of records
// take about as long, so a large conversation is read on two cores.
#pragma once

#include <functional>

#include "libchatsum/ChatsumUtils/MessageRow.h"
#include "platform/sqlite/Statement.h"

namespace chatsum {

/// Calls `take` on this thread for every row, in the statement's order; nobody else may use the connection meanwhile.
/// A step that fails counts as a row without values; false when the same step failed again, which ends the rows. What
/// is thrown on either side ends both and comes out here.
[[nodiscard]] bool takeRowsAhead(const sqlite::Statement& statement,
                                 const std::function<void(const MessageRow&)>& take);

}  // namespace chatsum
