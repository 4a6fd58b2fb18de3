// Writes the records of a report and puts the file in its place, whole or not at all. A report that fails leaves
// everything as it was. Blocks the caller; one report at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "hosts/device/report/ReportRequest.h"
#include "hosts/device/report/TimeRange.h"
#include "hosts/device/session/DeviceSession.h"
#include "hosts/device/stores/StoreProblem.h"
#include "platform/foundation/Value.h"

namespace chatsum::device {

/// What every report has, whatever its rows are.
struct WritingOptions {
  ReportLayout layout = {};
  std::optional<std::string> name = {};    ///< without or with the format's extension; none: one that the job gives
  bool replace = false;                    ///< an older report of that name, and an older output file, may go
  std::optional<std::string> output = {};  ///< a file that gets a copy
  bool listsAttachments = false;           ///< whether the job says which attachments the rows name
  /// Told when reading is done and writing begins.
  std::function<void()> writing = {};
  /// Told while pages are drawn how many rows of how many are on them.
  std::function<void(std::uint64_t done, std::uint64_t total)> drawn = {};
};

/// Why the options cannot be met for any records of that content; none when they can.
[[nodiscard]] std::optional<StoreProblem> checkWritingOptions(const WritingOptions& options,
                                                              const ReportContent& content);

/// Why no row can be inside the times that were asked for; none when one can.
[[nodiscard]] std::optional<StoreProblem> checkTimes(const TimeRange& range);

/// The full path of the report, when nothing is in the way there nor where its copy goes. `defaultName` has no
/// extension and is made fit for a file. The library has to be started.
[[nodiscard]] StoreResult<std::string> findReportPlace(const DeviceSession& session, const WritingOptions& options,
                                                       const ReportContent& content, const std::string& defaultName);

/// Writes the records, but for plain ones as `showWhole` has them, and puts the report at `path`, which
/// `findReportPlace` gave, and its copy. Answers how many rows were added for texts that are taller than a page. What
/// is not as one might expect is added to `notes`. The records of a large report are not taken apart afterwards, which
/// would take longer than the end of the process that follows.
[[nodiscard]] StoreResult<std::uint64_t> writeReport(DeviceSession& session, const WritingOptions& options,
                                                     const ReportContent& content, const std::string& path,
                                                     Array records, std::vector<std::string>& notes);

}  // namespace chatsum::device
