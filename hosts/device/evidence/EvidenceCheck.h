// Compares a report and its source with the evidence that was written when the report was made. Blocks the caller.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "hosts/device/evidence/EvidenceManifest.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

struct EvidenceCheckOptions {
  std::optional<std::string> source = {};  ///< where the source stands now; none: where it stood
  bool reportOnly = false;                 ///< the source is not looked at
  /// Told while files are read: bytes so far and bytes in all.
  std::function<void(std::uint64_t done, std::uint64_t total)> progress = {};
};

struct EvidenceFindings {
  Evidence evidence;
  std::vector<std::string> differences;  ///< a sentence for each file that is not as it was
  std::size_t checkedStores = 0, checkedAttachments = 0;

  [[nodiscard]] bool holds() const { return differences.empty(); }
};

/// Checks the report beside the manifest at `path`, then the files of the source. The problem when the manifest cannot
/// be read or the source is not there.
[[nodiscard]] StoreResult<EvidenceFindings> checkEvidence(const std::string& path, const EvidenceCheckOptions& options);

}  // namespace chatsum::device
