#include "hosts/device/evidence/EvidenceWriting.h"

#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

#include "hosts/device/evidence/UnreadFile.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/stores/StoreFiles.h"
#include "platform/system/files/AtomicWrite.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

/// The folder below which a source's files stand.
std::string folderOf(const SourceFacts& facts) {
  std::error_code error;
  return fs::is_directory(facts.path, error) ? facts.path : fs::path(facts.path).parent_path().string();
}

std::string relativeTo(const std::string& folder, const std::string& path) {
  const std::string start = folder == "/" ? folder : folder + "/";
  return path.starts_with(start) ? path.substr(start.size()) : path;
}

std::uint64_t sizeOf(const std::string& path) {
  const auto state = fileState(path);
  return state ? static_cast<std::uint64_t>(state->size) : 0;
}

StoreProblem changed(const std::string& path) {
  return {
      say("'{0}' changed after it was read, so the evidence of the report is not written; quit the programs that use "
          "it and make the report again.",
          path)};
}

bool isThere(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

/// Reads files of a source and counts the bytes.
class SourceDigests {
 public:
  SourceDigests(const DeviceSource& source, std::function<void(std::uint64_t)> advanced)
      : folder_(folderOf(source.facts())), read_(source.digests()), advanced_(std::move(advanced)) {}

  /// States the files of the stores, and that others are not there.
  std::optional<StoreProblem> addStores(const std::vector<SourceFile>& files, Evidence& evidence) const {
    for (const SourceFile& file : files) {
      const ReadDigests::Reading* const reading = read_ ? read_->find(file.path) : nullptr;
      const EvidencePlace place{file.name, relativeTo(folder_, file.path)};
      if (place.file.starts_with('/')) return outside(file.path);
      if (!isThere(file.path)) {
        if (reading && (reading->digest || !reading->isSteady)) return changed(file.path);
        evidence.absent.push_back(place);
        continue;
      }
      auto digest = digestOfFile(file.path, advanced_);
      if (!digest) return unwritten(digest.problem());
      if (reading && (!reading->isSteady || reading->digest != digest.value())) return changed(file.path);
      evidence.stores.push_back({place.name, place.file, std::move(digest.value())});
    }
    return std::nullopt;
  }

  /// One that cannot be digested is stated with the reason.
  std::optional<StoreProblem> addAttachments(const std::vector<SourceFile>& files, Evidence& evidence) const {
    for (const SourceFile& file : files) {
      EvidencePlace place{file.name, relativeTo(folder_, file.path)};
      if (place.file.starts_with('/')) return outside(file.path);
      auto digest = digestOfFile(file.path, advanced_);
      if (digest) {
        evidence.attachments.push_back({std::move(place.name), std::move(place.file), std::move(digest.value())});
      } else {
        evidence.unreadAttachments.push_back({std::move(place), whyUnread(file.path)});
      }
    }
    return std::nullopt;
  }

 private:
  static StoreProblem unwritten(const StoreProblem& problem) {
    return {problem.sentence + " " + say("The evidence of the report cannot be written.")};
  }
  static StoreProblem outside(const std::string& path) {
    return unwritten({say("'{0}' does not stand in the source.", path)});
  }

  std::string folder_;
  std::shared_ptr<const ReadDigests> read_;
  std::function<void(std::uint64_t)> advanced_;
};

/// The permissions of a report's evidence: who may read the one may read the other.
mode_t modeBeside(const std::string& report) {
  struct stat status {};
  return ::stat(report.c_str(), &status) == 0 ? status.st_mode & 0666 : platform::system::kPrivateFile;
}

StoreResult<WrittenEvidence> writeManifest(const std::string& path, const Evidence& evidence, mode_t mode) {
  const std::string text = evidenceText(evidence);
  if (const int error = platform::system::writeFileAtomically(path, text, mode); error != 0) {
    return StoreProblem{
        say("The evidence '{0}' could not be written ({1}).", path, std::generic_category().message(error))};
  }
  return WrittenEvidence{path, digestOf(text).sha256, evidence.missingAttachments.size(),
                         evidence.unreadAttachments.size()};
}

}  // namespace

StoreResult<std::vector<WrittenEvidence>> writeEvidence(const DeviceSource& source,
                                                        const std::vector<std::string>& reports,
                                                        const EvidenceRequest& request) {
  const auto manifestOf = [](const std::string& report) {
    const fs::path path(report);
    return (path.parent_path() / evidenceNameFor(path.filename().string())).string();
  };
  // Those of an older report would be wrong from now on.
  for (const std::string& report : reports) removeEvidenceOf(report);

  std::vector<SourceFile> stores = source.lists(), attachments;
  Evidence evidence;
  for (const SourceStore store : request.stores) {
    for (SourceFile& file : source.originals(store)) stores.push_back(std::move(file));
    for (SourceFile& file : source.absentees(store)) stores.push_back(std::move(file));
  }
  // A place may be looked into for more than one reason.
  std::set<std::string> known;
  std::erase_if(stores, [&](const SourceFile& file) { return !known.insert(file.path).second; });
  for (const std::string& name : std::set<std::string>(request.attachments.begin(), request.attachments.end())) {
    if (auto file = source.originalOfMessage(name)) {
      attachments.push_back({name, std::move(file->path)});
    } else {
      evidence.missingAttachments.push_back(name);
    }
  }

  std::uint64_t total = 0, done = 0;
  for (const std::string& report : reports) total += sizeOf(report);
  for (const auto* files : {&stores, &attachments}) {
    for (const SourceFile& file : *files) total += sizeOf(file.path);
  }
  const auto advanced = [&](std::uint64_t bytes) {
    done += bytes;
    if (request.progress) request.progress(done, total);
  };
  const SourceDigests digests(source, advanced);
  if (auto problem = digests.addStores(stores, evidence)) return *problem;
  if (auto problem = digests.addAttachments(attachments, evidence)) return *problem;
  evidence.programVersion = request.programVersion;
  evidence.created = request.created;
  evidence.timeZone = request.timeZone;
  evidence.source = source.facts();
  evidence.options = request.options;
  evidence.counts = request.counts;

  std::vector<WrittenEvidence> all;
  for (const std::string& report : reports) {
    auto digest = digestOfFile(report, advanced);
    if (!digest) return digest.problem();
    evidence.reportName = fs::path(report).filename().string();
    evidence.report = std::move(digest.value());
    auto written = writeManifest(manifestOf(report), evidence, modeBeside(report));
    if (!written) return written.problem();
    all.push_back(std::move(written.value()));
  }
  return all;
}

}  // namespace chatsum::device
