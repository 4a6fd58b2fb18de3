// The messages of one conversation, read on the worker. Unchanged once made: any thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/desktop/engine/ReportRows.h"
#include "hosts/device/conversations/Conversation.h"
#include "hosts/device/session/DeviceSession.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::desktop {

struct MessageList {
  ReportRows rows;                    ///< the oldest first
  std::vector<std::uint32_t> events;  ///< rows that nobody wrote, ascending: people coming and going, and the like
  /// Rows that came or went by another address or service than the row before, ascending: of conversations that are put
  /// together from several, whose rows look alike otherwise.
  std::vector<std::uint32_t> origins;
  std::string balance;  ///< the sentence that accounts for every row of the store
  std::vector<std::string> notes;
};

/// `origins` of the records of a conversation, which have the keys "Address" and "Service" where they are known. Its
/// `events` have none.
[[nodiscard]] std::vector<std::uint32_t> findOrigins(const device::Conversation& conversation, const Array& records,
                                                     const std::vector<std::uint32_t>& events);

/// Reads them; takes long, and cannot be stopped. `progress` is told on the same thread how much is done.
[[nodiscard]] device::StoreResult<std::shared_ptr<const MessageList>> readMessages(
    device::DeviceSession& session, const device::Conversation& conversation,
    const std::function<void(std::uint64_t done, std::uint64_t total)>& progress);

}  // namespace chatsum::desktop
