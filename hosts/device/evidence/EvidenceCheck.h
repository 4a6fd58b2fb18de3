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
  /// What the manifest's own SHA-256 has to be, 64 lower-case hexadecimal digits; none: it is not compared.
  std::optional<std::string> expected = {};
  /// Told while files are read: bytes so far and bytes in all.
  std::function<void(std::uint64_t done, std::uint64_t total)> progress = {};
};

struct EvidenceFindings {
  Evidence evidence;
  std::string sha256;                    ///< of the manifest itself
  std::vector<std::string> differences;  ///< a sentence for each file that is not as it was
  std::size_t checkedStores = 0, checkedAttachments = 0;

  [[nodiscard]] bool holds() const { return differences.empty(); }
};

/// Checks the report beside the manifest at `path`, then the files of the source, and that none was added where none
/// was. The problem when the manifest cannot be read or is not the expected one, or the source is not there.
[[nodiscard]] StoreResult<EvidenceFindings> checkEvidence(const std::string& path, const EvidenceCheckOptions& options);

}  // namespace chatsum::device
