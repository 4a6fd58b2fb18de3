// What a report was made of, as a file that stands beside it: whoever has the source can show later that neither source
// nor report changed. A JSON object (RFC 8259); its format is described in docs/evidence.md. Plain values.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/source/SourceFacts.h"
#include "hosts/device/stores/FileDigest.h"
#include "hosts/device/stores/StoreProblem.h"
#include "platform/foundation/Date.h"

namespace chatsum::device {

using EvidenceJson = nlohmann::ordered_json;

/// One file that a report was made of.
struct EvidenceFile {
  std::string name;  ///< what it is to the device, as "HomeDomain-Library/SMS/sms.db"
  std::string file;  ///< where it stands below the source's folder
  FileDigest digest;
};

/// A place in the source without a file that was digested.
struct EvidencePlace {
  std::string name;  ///< as of `EvidenceFile`
  std::string file;  ///< the same
};

/// An attachment that stands in the source and could not be digested.
struct UnreadAttachment {
  enum class Why { kFolder, kSpecial, kUnreadable };

  EvidencePlace place;
  Why why = Why::kUnreadable;
};

struct Evidence {
  /// Manifests of version 1 state neither `absent` nor `unreadAttachments`, nor the lists of a backup.
  int version = 2;
  std::string programVersion;
  Date created;          ///< when the report was made
  std::string timeZone;  ///< IANA name of the zone that times are written in
  std::string reportName;
  FileDigest report;
  SourceFacts source;
  std::vector<EvidenceFile> stores;
  std::vector<EvidencePlace> absent;  ///< where no file was, that would have been read with the stores
  std::vector<EvidenceFile> attachments;
  std::vector<UnreadAttachment> unreadAttachments;
  std::vector<std::string> missingAttachments;  ///< that messages name and the source has not
  EvidenceJson options = EvidenceJson::object();
  EvidenceJson counts = EvidenceJson::object();
};

/// "Maya.pdf.evidence.json": the manifest's name beside a report of that name.
[[nodiscard]] std::string evidenceNameFor(std::string_view reportName);
/// Whether a file of that name is the manifest of a report.
[[nodiscard]] bool isEvidenceName(std::string_view name);
/// Removes the manifest beside the report of that path, if there is one: it holds of no report that is gone or another
/// one by now.
void removeEvidenceOf(const std::string& reportPath);

/// The manifest's bytes: the same for the same values.
[[nodiscard]] std::string evidenceText(const Evidence& evidence);

/// Reads them back. The problem when they are no manifest, or one of a newer format.
[[nodiscard]] StoreResult<Evidence> parseEvidence(std::string_view text);

}  // namespace chatsum::device
