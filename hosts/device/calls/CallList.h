// The calls of a source: its lists put together, people named, what was not asked for left out and counted. Blocks the
// caller; one reading at a time.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/calls/Call.h"
#include "hosts/device/calls/CallBalance.h"
#include "hosts/device/report/TimeRange.h"
#include "hosts/device/session/DeviceSession.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// The applications that make calls of their own.
enum class CallApp { kPhone, kFaceTime };

/// "phone" or "facetime".
[[nodiscard]] constexpr std::string_view serviceOf(CallApp app) {
  return app == CallApp::kPhone ? kPhoneService : kFaceTimeService;
}

struct CallListOptions {
  std::optional<CallApp> app = {};         ///< none: calls of every app
  TimeRange range = {};                    ///< of the start of a call
  std::optional<std::string> person = {};  ///< an address, however it is written, or a whole name in any case
  bool newestFirst = true;
  std::string region = "US";  ///< of numbers without a country code, ISO 3166 alpha-2
};

struct CallList {
  std::vector<Call> calls;  ///< in the wanted order, those without a date last
  CallBalance balance;
  std::optional<Date> first, last;  ///< of everything in the lists
  std::vector<std::string> notes;   ///< sentences: the time that the lists cover, and what is not as one might expect
};

/// The problem when the source has no call list, when the main one cannot be read whole, or when it changed meanwhile.
/// A list beside it that cannot be read is told in the notes. The session may be without messages.
[[nodiscard]] StoreResult<CallList> readCalls(const DeviceSession& session, const CallListOptions& options);

}  // namespace chatsum::device
