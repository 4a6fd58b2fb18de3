#include "hosts/device/evidence/EvidenceManifest.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <utility>

#include "hosts/device/language/Say.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kEnd = ".evidence.json";
constexpr const char* kFormat = "chatsum evidence";
constexpr int kVersion = 2;
constexpr std::size_t kDigestDigits = 64;

using Json = EvidenceJson;

Json jsonOf(const FileDigest& digest) { return {{"size", digest.size}, {"sha256", digest.sha256}}; }

Json jsonOf(const std::vector<EvidenceFile>& files) {
  Json list = Json::array();
  for (const EvidenceFile& file : files) {
    Json entry = {{"name", file.name}, {"file", file.file}};
    entry.update(jsonOf(file.digest));
    list.push_back(std::move(entry));
  }
  return list;
}

Json jsonOf(const EvidencePlace& place) { return {{"name", place.name}, {"file", place.file}}; }

constexpr std::array<std::pair<UnreadAttachment::Why, std::string_view>, 3> kReasons = {
    {{UnreadAttachment::Why::kFolder, "folder"},
     {UnreadAttachment::Why::kSpecial, "special"},
     {UnreadAttachment::Why::kUnreadable, "unreadable"}}};

Json jsonOf(const std::vector<EvidencePlace>& places) {
  Json list = Json::array();
  for (const EvidencePlace& place : places) list.push_back(jsonOf(place));
  return list;
}

Json jsonOf(const std::vector<UnreadAttachment>& attachments) {
  Json list = Json::array();
  for (const UnreadAttachment& attachment : attachments) {
    Json entry = jsonOf(attachment.place);
    for (const auto& [why, word] : kReasons) {
      if (why == attachment.why) entry["why"] = word;
    }
    list.push_back(std::move(entry));
  }
  return list;
}

/// "2026-11-21T13:05:00Z", whole seconds of UTC.
std::string utcTime(Date date) {
  const auto seconds = static_cast<std::time_t>(std::floor(date.secondsSince1970));
  std::tm parts{};
  std::array<char, 40> text{};
  if (!::gmtime_r(&seconds, &parts)) return "";
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

std::optional<Date> dateOf(const std::string& text) {
  std::tm parts{};
  const char* const end = ::strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts);
  if (!end || *end != '\0') return std::nullopt;
  return Date{static_cast<double>(::timegm(&parts))};
}

Json jsonOf(const SourceFacts& facts) {
  Json source = {{"kind", wordOf(facts.kind)}, {"path", facts.path}, {"encrypted", facts.isEncrypted}};
  const std::array<std::pair<const char*, const std::string*>, 7> texts = {{{"device", &facts.deviceName},
                                                                            {"productType", &facts.productType},
                                                                            {"systemVersion", &facts.systemVersion},
                                                                            {"buildVersion", &facts.buildVersion},
                                                                            {"serialNumber", &facts.serialNumber},
                                                                            {"identifier", &facts.deviceIdentifier},
                                                                            {"phoneNumber", &facts.phoneNumber}}};
  for (const auto& [key, text] : texts) {
    if (!text->empty()) source[key] = *text;
  }
  if (facts.date) source["date"] = utcTime(*facts.date);
  return source;
}

StoreProblem foreign(const std::string& why) {
  return {say("This is no evidence manifest ({0}); give the file that 'chatsum report --evidence' wrote.", why)};
}

bool isDigest(const std::string& text) {
  return text.size() == kDigestDigits && text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

/// Below a folder that it must not lead out of: what is checked elsewhere says nothing of that folder.
bool isPlace(const std::string& file) {
  const std::string inside = "/" + file + "/";
  return !file.empty() && file.front() != '/' && file.find('\0') == std::string::npos &&
         inside.find("/../") == std::string::npos;
}

/// Reads members of a JSON object and remembers the first that is missing or of another kind.
class Members {
 public:
  [[nodiscard]] const std::string& missing() const { return missing_; }

  std::string text(const Json& object, const char* key) {
    const auto found = object.find(key);
    if (found != object.end() && found->is_string()) return found->get<std::string>();
    note(key);
    return {};
  }
  FileDigest digest(const Json& object) {
    FileDigest digest{0, text(object, "sha256")};
    if (!isDigest(digest.sha256)) note("sha256");
    const auto size = object.find("size");
    if (size != object.end() && size->is_number_unsigned()) {
      digest.size = size->get<std::uint64_t>();
    } else {
      note("size");
    }
    return digest;
  }
  const Json& object(const Json& parent, const char* key) { return part(parent, key, &Json::is_object); }
  const Json& array(const Json& parent, const char* key) { return part(parent, key, &Json::is_array); }
  std::vector<EvidenceFile> files(const Json& parent, const char* key) {
    std::vector<EvidenceFile> files;
    for (const Json& entry : array(parent, key)) {
      EvidencePlace found = place(entry);
      files.push_back({std::move(found.name), std::move(found.file), digest(entry)});
    }
    return files;
  }
  std::vector<EvidencePlace> places(const Json& parent, const char* key) {
    std::vector<EvidencePlace> places;
    for (const Json& entry : array(parent, key)) places.push_back(place(entry));
    return places;
  }
  std::vector<UnreadAttachment> unread(const Json& parent, const char* key) {
    std::vector<UnreadAttachment> attachments;
    for (const Json& entry : array(parent, key)) {
      attachments.push_back({.place = place(entry)});
      const std::string word = text(entry, "why");
      const auto* const reason = std::find_if(kReasons.begin(), kReasons.end(),
                                              [&](const auto& candidate) { return candidate.second == word; });
      if (reason == kReasons.end()) {
        note("why");
      } else {
        attachments.back().why = reason->first;
      }
    }
    return attachments;
  }

 private:
  /// `entry` may be no object: then it has no member.
  EvidencePlace place(const Json& entry) {
    EvidencePlace place{text(entry, "name"), text(entry, "file")};
    if (!isPlace(place.file)) note("file");
    return place;
  }
  const Json& part(const Json& parent, const char* key, bool (Json::*isKind)() const noexcept) {
    static const Json kNone = Json::object();
    const auto found = parent.find(key);
    if (found != parent.end() && ((*found).*isKind)()) return *found;
    note(key);
    return kNone;
  }
  void note(const char* key) {
    if (missing_.empty()) missing_ = key;
  }

  std::string missing_;
};

SourceFacts sourceOf(const Json& object, Members& members) {
  SourceFacts facts;
  const std::string kind = members.text(object, "kind");
  for (const SourceKind each : {SourceKind::kDevice, SourceKind::kBackup, SourceKind::kMac, SourceKind::kFile}) {
    if (kind == wordOf(each)) facts.kind = each;
  }
  facts.path = members.text(object, "path");
  facts.deviceName = object.value("device", "");
  return facts;
}

}  // namespace

std::string evidenceNameFor(std::string_view reportName) { return std::string(reportName) + std::string(kEnd); }

bool isEvidenceName(std::string_view name) { return name.size() > kEnd.size() && name.ends_with(kEnd); }

void removeEvidenceOf(const std::string& reportPath) { ::unlink(evidenceNameFor(reportPath).c_str()); }

std::string evidenceText(const Evidence& evidence) {
  Json report = {{"file", evidence.reportName}};
  report.update(jsonOf(evidence.report));
  const Json manifest = {{"format", kFormat},
                         {"version", kVersion},
                         {"program", {{"name", "chatsum"}, {"version", evidence.programVersion}}},
                         {"created", utcTime(evidence.created)},
                         {"timeZone", evidence.timeZone},
                         {"report", std::move(report)},
                         {"source", jsonOf(evidence.source)},
                         {"stores", jsonOf(evidence.stores)},
                         {"absent", jsonOf(evidence.absent)},
                         {"attachments", jsonOf(evidence.attachments)},
                         {"unreadAttachments", jsonOf(evidence.unreadAttachments)},
                         {"missingAttachments", evidence.missingAttachments},
                         {"options", evidence.options},
                         {"counts", evidence.counts}};
  // Names are bytes of the source and need not be UTF-8.
  return manifest.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

StoreResult<Evidence> parseEvidence(std::string_view text) {
  const Json manifest = Json::parse(text, nullptr, false);
  if (!manifest.is_object()) return foreign(say("it is not a JSON object"));
  Members members;
  if (members.text(manifest, "format") != kFormat) return foreign(say("its format is another"));
  const auto version = manifest.find("version");
  if (version == manifest.end() || !version->is_number_unsigned()) return foreign(say("it has no version"));
  if (version->get<std::uint64_t>() > kVersion) {
    return StoreProblem{say("This evidence manifest was written by a newer chatsum; verify it with that one.")};
  }
  Evidence evidence;
  evidence.version = version->get<int>();
  if (evidence.version == 0) return foreign(say("it has no version"));
  try {
    evidence.programVersion = members.text(members.object(manifest, "program"), "version");
    const auto created = dateOf(members.text(manifest, "created"));
    if (!created) return foreign(say("its time is none"));
    evidence.created = *created;
    evidence.timeZone = members.text(manifest, "timeZone");
    const Json& report = members.object(manifest, "report");
    evidence.reportName = members.text(report, "file");
    evidence.report = members.digest(report);
    evidence.source = sourceOf(members.object(manifest, "source"), members);
    evidence.stores = members.files(manifest, "stores");
    evidence.attachments = members.files(manifest, "attachments");
    if (evidence.version > 1) {
      evidence.absent = members.places(manifest, "absent");
      evidence.unreadAttachments = members.unread(manifest, "unreadAttachments");
    }
    for (const Json& name : members.array(manifest, "missingAttachments")) {
      if (name.is_string()) evidence.missingAttachments.push_back(name.get<std::string>());
    }
    evidence.options = members.object(manifest, "options");
    evidence.counts = members.object(manifest, "counts");
  } catch (const Json::exception&) {
    return foreign(say("a member is of another kind"));
  }
  if (!members.missing().empty()) return foreign(say("its '{0}' is missing or damaged", members.missing()));
  if (evidence.stores.empty()) return foreign(say("it names no file of a store"));
  const bool isName = !evidence.reportName.empty() && evidence.reportName.find('/') == std::string::npos;
  if (!isName) return foreign(say("its report is not a file's name"));
  return evidence;
}

}  // namespace chatsum::device
