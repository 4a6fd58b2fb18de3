// Which chats are one conversation. A person has a chat for each service and address; Messages shows them as one.
// No state, any thread.
#pragma once

#include <string>
#include <vector>

#include "hosts/device/conversations/StoredChats.h"

namespace chatsum::device {

/// The chats that belong together, as places in `rows.chats`, each list ascending and the lists by their first place.
///
/// Chats with exactly one other person are merged when that person is the same: the same handle over any service, the
/// same person of the store, the same card (`cards[i]` is the record of the person behind the first member of chat i,
/// -1 without a card), or chats that a newer store ties together itself. Groups are merged when they have the same
/// members and the same group identity or title. A group and a person are never merged.
///
/// `memberKeys[i]` names the people of chat i, so that one person with two addresses counts as one member.
[[nodiscard]] std::vector<std::vector<std::size_t>> mergeChats(const StoredChats& rows, const std::vector<int>& cards,
                                                               const std::vector<std::vector<std::string>>& memberKeys);

}  // namespace chatsum::device
