// What becomes of a report that the library's screen writes: names that would go wrong are refused before, and since
// the screen is silent about failures, the file is looked at afterwards. No state; the screen's own thread.
#pragma once

#include <QString>
#include <string>

#include "hosts/device/session/WatchedFiles.h"

namespace chatsum::desktop {

/// A report as the user named it.
struct WantedReport {
  std::string folder;
  std::string name;       ///< without the format's extension
  std::string extension;  ///< "txt", "csv", "pdf"

  /// Where the user expects it.
  [[nodiscard]] std::string place() const;
  /// Where the library writes it: a name with a dot in it ("Dr. Smith") passes for one that has an extension.
  [[nodiscard]] std::string writtenPlace() const;
};

/// Why no report can have that name, one sentence; empty when one can.
[[nodiscard]] QString nameProblem(const WantedReport& wanted, const platform::Files& files);

struct ReportOutcome {
  QString path;     ///< of the finished report
  QString failure;  ///< why there is none, one sentence; empty when there is one
};

/// To be asked when writing has ended. `files` has watched it from its beginning. What is not whole is removed, a report
/// under another name than its own gets that.
[[nodiscard]] ReportOutcome settleReport(const WantedReport& wanted, device::WatchedFiles& files);

}  // namespace chatsum::desktop
