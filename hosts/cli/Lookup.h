// Finds the conversation that a person names on the command line. One thread.
#pragma once

#include <optional>
#include <string>

#include "hosts/cli/Console.h"
#include "hosts/device/conversations/Conversation.h"
#include "hosts/device/session/DeviceSession.h"

namespace chatsum::cli {

/// The one conversation that `wanted` names (chat GUID, chat identifier or whole name). Otherwise says what is wrong,
/// lists the conversations when several have that name, and answers none.
[[nodiscard]] std::optional<device::Conversation> findConversation(const device::DeviceSession& session,
                                                                   const std::string& wanted, const Console& console);

/// "2019-11-25", the day in the local zone; "-" without a date.
[[nodiscard]] std::string dayOf(const std::optional<Date>& date);

}  // namespace chatsum::cli
