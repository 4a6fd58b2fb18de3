// Reads a conversation through the library and makes its odd rules harmless: messages are put into words, dates it
// cannot tell are put right, excluded messages and those outside the wanted times are dropped here, and every row is
// accounted for. Blocks the caller; one reading at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "hosts/device/conversations/Conversation.h"
#include "hosts/device/report/Balance.h"
#include "hosts/device/report/TimeRange.h"
#include "hosts/device/session/DeviceSession.h"
#include "hosts/device/stores/StoreProblem.h"
#include "platform/foundation/Value.h"

namespace chatsum::device {

struct ReadingOptions {
  bool newestFirst = false;
  TimeRange range = {};
  std::vector<std::string> excluded = {};  ///< message GUIDs; all rows of the message go
  // Only where messages are put into words; each such message says what it is.
  bool deleted = false;   ///< with messages, and parts of messages, that were deleted lately
  bool orphaned = false;  ///< with messages of the conversation's people that stand in no chat
  bool origins = false;   ///< records have the keys "Address" and "Service", too (see MessageOrigins)
  /// Whether notes on messages that are left out name the options of the command line that show them.
  bool namesOptions = true;
  /// Told now and then on the thread that reads, while the caller waits: rows read so far, and about how many there
  /// are.
  std::function<void(std::uint64_t done, std::uint64_t total)> progress = {};
};

struct Reading {
  Array records;  ///< in the wanted order; a record without a date has no "Date"
  Balance balance;
  std::vector<std::string> notes;  ///< sentences about what is not as one might expect
};

/// The problem when the store cannot be read whole, changed meanwhile, or when the balance does not hold.
[[nodiscard]] StoreResult<Reading> readConversation(DeviceSession& session, const Conversation& conversation,
                                                    const ReadingOptions& options);

}  // namespace chatsum::device
