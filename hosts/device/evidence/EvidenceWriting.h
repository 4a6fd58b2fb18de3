// Gathers the evidence of a report that was just made and puts it beside the report. Blocks the caller.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "hosts/device/evidence/EvidenceManifest.h"
#include "hosts/device/source/DeviceSource.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

struct EvidenceRequest {
  std::string programVersion;
  Date created;
  std::string timeZone;
  std::vector<SourceStore> stores;       ///< those that the report was read from
  std::vector<std::string> attachments;  ///< that the report's rows name, as messages name them; repetitions allowed
  EvidenceJson options = EvidenceJson::object();
  EvidenceJson counts = EvidenceJson::object();
  /// Told while files are read: bytes so far and bytes in all.
  std::function<void(std::uint64_t done, std::uint64_t total)> progress;
};

struct WrittenEvidence {
  std::string path;
  std::string sha256;  ///< of the manifest itself
  std::size_t missingAttachments = 0, unreadAttachments = 0;
};

/// Reads every file whole and writes a manifest beside each of `reports` (paths of copies of one report), replacing
/// older ones. Answers them in that order. Of the stores it states what was read of them, as the source's `digests`
/// have it, and compares that with what stands there now. The problem when the two differ, or when a file of a store
/// cannot be read or a manifest cannot be written; none of an older report stands there then.
[[nodiscard]] StoreResult<std::vector<WrittenEvidence>> writeEvidence(const DeviceSource& source,
                                                                      const std::vector<std::string>& reports,
                                                                      const EvidenceRequest& request);

}  // namespace chatsum::device
