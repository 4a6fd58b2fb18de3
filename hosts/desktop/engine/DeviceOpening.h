// Opens a source and reads what the window shows of it first: its conversations and calls. On the worker; blocks it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/desktop/engine/CallBook.h"
#include "hosts/desktop/engine/Cancellation.h"
#include "hosts/desktop/engine/ConversationItem.h"
#include "hosts/desktop/engine/OpenDevice.h"
#include "hosts/device/session/DeviceSession.h"
#include "hosts/device/source/SourceFacts.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::desktop {

/// Values for the main thread.
struct OpenedDevice {
  device::SourceFacts facts;
  bool hasMessages = false;
  std::shared_ptr<const ConversationItems> conversations = std::make_shared<ConversationItems>();
  std::int64_t messages = 0;              ///< in all conversations
  std::shared_ptr<const CallBook> calls;  ///< null: the source has no call list that can be read
  std::vector<std::string> notes;         ///< sentences: what is missing or odd about the source
};

enum class OpeningStep { kOpening, kReadingConversations, kReadingCalls };

/// Opens the source into `place`, which is empty. The problem when it cannot be opened, or holds neither messages nor
/// calls that can be read; `place` is empty then, as it is when the opening was cancelled.
[[nodiscard]] device::StoreResult<OpenedDevice> openDevice(OpenDevice& place,
                                                           const device::DeviceSession::Options& options,
                                                           const std::function<void(OpeningStep)>& tell,
                                                           const Cancellation& cancellation);

/// Whether that is what is said when an encrypted backup was given another password than its own.
[[nodiscard]] bool isWrongPassword(const device::StoreProblem& problem);

}  // namespace chatsum::desktop
