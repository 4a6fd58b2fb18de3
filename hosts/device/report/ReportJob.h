// Makes one report of a conversation: reads, writes, checks what was written, and only then puts it in its place. A job
// that fails leaves everything as it was. Blocks the caller; one job at a time.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/device/conversations/Conversation.h"
#include "hosts/device/report/Balance.h"
#include "hosts/device/report/ConversationReading.h"
#include "hosts/device/report/ReportWriting.h"
#include "hosts/device/session/DeviceSession.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

struct ReportOptions : WritingOptions {  // the name is the conversation's when none is given
  ReadingOptions reading;
};

struct MadeReport {
  std::string path;  ///< full path in the reports folder
  Balance balance;
  std::vector<std::string> notes;
  std::vector<std::string> attachments = {};  ///< as messages name them, when they are to be listed
};

/// Why the options cannot be met whatever the conversation is; none when they can.
[[nodiscard]] std::optional<StoreProblem> checkReportOptions(const ReportOptions& options);

/// Makes the report. A job is for programs that make one report and end, or few (see `writeReport`).
[[nodiscard]] StoreResult<MadeReport> makeReport(DeviceSession& session, const Conversation& conversation,
                                                 const ReportOptions& options);

}  // namespace chatsum::device
