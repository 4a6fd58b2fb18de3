// Makes one report of a conversation: reads, writes, checks what was written, and only then puts it in its place. A job
// that fails leaves everything as it was. Blocks the caller; one job at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "hosts/device/conversations/Conversation.h"
#include "hosts/device/report/Balance.h"
#include "hosts/device/report/ConversationReading.h"
#include "hosts/device/report/ReportRequest.h"
#include "hosts/device/source/DeviceSession.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

struct ReportOptions {
  ReportLayout layout;
  ReadingOptions reading;
  std::optional<std::string> name;    ///< without or with the format's extension; none: the conversation's name
  bool replace = false;               ///< an older report of that name, and an older output file, may go
  std::optional<std::string> output;  ///< a file that gets a copy
  /// Told when reading is done and writing begins.
  std::function<void()> writing;
  /// Told while pages are drawn how many rows of how many are on them.
  std::function<void(std::uint64_t done, std::uint64_t total)> drawn;
};

struct MadeReport {
  std::string path;  ///< full path in the reports folder
  Balance balance;
  std::vector<std::string> notes;
};

/// Why the options cannot be met whatever the conversation is; none when they can.
[[nodiscard]] std::optional<StoreProblem> checkReportOptions(const ReportOptions& options);

/// Makes the report. The records of a large one are not taken apart afterwards, which would take longer than the end of
/// the process that follows; so a job is for programs that make one report and end, or few.
[[nodiscard]] StoreResult<MadeReport> makeReport(DeviceSession& session, const Conversation& conversation,
                                                 const ReportOptions& options);

}  // namespace chatsum::device
