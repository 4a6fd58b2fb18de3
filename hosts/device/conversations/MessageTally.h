// Counts the messages of every conversation of a store in one pass. Any thread; the connections are used by this call
// only.
#pragma once

#include <optional>
#include <vector>

#include "hosts/device/conversations/Conversation.h"
#include "hosts/device/stores/StoreProblem.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

/// Fills in `messages`, `first` and `last` of each conversation. `one` and `two` are connections to the same store;
/// each is used on a thread of its own, so that the two large scans run side by side.
[[nodiscard]] std::optional<StoreProblem> tallyMessages(const sqlite::Connection& one, const sqlite::Connection& two,
                                                        std::vector<Conversation>& conversations);

}  // namespace chatsum::device
