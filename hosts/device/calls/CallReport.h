// Makes one report of the calls of an app: reads, writes, and only then puts the file in its place. A job that fails
// leaves everything as it was. Blocks the caller; one job at a time.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/device/calls/CallBalance.h"
#include "hosts/device/calls/CallList.h"
#include "hosts/device/report/ReportWriting.h"
#include "hosts/device/session/DeviceSession.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

struct CallReportOptions : WritingOptions {  // the name is "Phone calls" or "FaceTime calls" when none is given
  CallApp app = CallApp::kPhone;
  CallListOptions calls;  ///< its app does not count
};

struct MadeCallReport {
  std::string path;  ///< full path in the reports folder
  CallBalance balance;
  std::vector<std::string> notes;
};

/// Why the options cannot be met whatever the calls are; none when they can.
[[nodiscard]] std::optional<StoreProblem> checkCallReportOptions(const CallReportOptions& options);

/// Makes the report. The session may be without messages.
[[nodiscard]] StoreResult<MadeCallReport> makeCallReport(DeviceSession& session, const CallReportOptions& options);

}  // namespace chatsum::device
