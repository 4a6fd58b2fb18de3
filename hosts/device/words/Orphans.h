// Messages that stand in no chat: left behind when chats were deleted, or by damage. They are served as if they stood
// in a chat of their own. No state; each operation has its connection to itself.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "hosts/device/conversations/Conversation.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

/// The chat that stands for them; no store has it.
inline constexpr std::int64_t kOrphanChat = std::numeric_limits<std::int64_t>::min() + 1;
inline constexpr const char* kOrphanChatGuid = "chatsum;orphaned";

/// A conversation of all such messages of a store, whoever wrote them.
[[nodiscard]] Conversation conversationOfOrphans();

/// The messages (ROWIDs, ascending) that belong to the conversation although they stand in no chat, not even in one as
/// recently deleted: those with a room of a group, and those of a single person without a room. Answers the reason of a
/// failure.
[[nodiscard]] std::optional<std::string> findOrphans(const sqlite::Connection& store, const Conversation& conversation,
                                                     std::vector<std::int64_t>& messages);

/// A quicker look whether there are any in the whole store, for those who just want to mention them: true when the
/// chats do not hold as many messages as there are. Only damage on both sides at once can hide some from it.
[[nodiscard]] bool mayHaveOrphans(const sqlite::Connection& store);

}  // namespace chatsum::device
