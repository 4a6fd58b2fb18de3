// The evidence that 'report --evidence' puts beside a report. One thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/cli/Invocation.h"
#include "hosts/device/calls/CallBalance.h"
#include "hosts/device/evidence/EvidenceWriting.h"
#include "hosts/device/report/Balance.h"
#include "hosts/device/session/DeviceSession.h"

namespace chatsum::cli {

/// What a report counted, by reason.
[[nodiscard]] device::EvidenceJson countsOf(const device::Balance& balance);
[[nodiscard]] device::EvidenceJson countsOf(const device::CallBalance& balance);

/// Of a report that was made.
struct ReportFacts {
  std::string path;
  std::optional<std::string> output;     ///< where a copy of it stands
  std::vector<std::string> attachments;  ///< that its rows name
  std::vector<device::SourceStore> stores;
  device::EvidenceJson options, counts;
};

/// Writes the evidence beside the report and beside its copy, and says where; else says what is wrong. Answers the
/// program's exit code.
[[nodiscard]] int writeReportEvidence(const Invocation& invocation, const device::DeviceSession& session,
                                      const ReportFacts& facts);

}  // namespace chatsum::cli
