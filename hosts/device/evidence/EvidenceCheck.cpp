#include "hosts/device/evidence/EvidenceCheck.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "hosts/device/evidence/UnreadFile.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/stores/StoreFiles.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kMostBytes = std::uintmax_t{256} << 20;

StoreResult<std::string> readManifest(const std::string& path) {
  std::error_code error;
  const auto size = fs::file_size(path, error);
  if (error) return StoreProblem{say("The evidence '{0}' cannot be read ({1}).", path, error.message())};
  if (size > kMostBytes) return StoreProblem{say("'{0}' is too large to be an evidence manifest.", path)};
  std::ifstream file(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file) return StoreProblem{say("The evidence '{0}' cannot be read.", path)};
  return text;
}

/// One file to compare: its place, its name in sentences, what it was.
struct Comparison {
  std::string path;
  std::string shownName;
  const FileDigest* expected;
};

std::optional<std::string> differenceOf(const Comparison& comparison,
                                        const std::function<void(std::uint64_t)>& advanced) {
  const auto digest = digestOfFile(comparison.path, advanced);
  if (!digest) return comparison.shownName + ": " + digest.problem().sentence;
  const FileDigest& now = digest.value();
  if (now == *comparison.expected) return std::nullopt;
  if (now.size != comparison.expected->size) {
    return say("{0}: '{1}' was changed: it has {2} bytes and had {3}.", comparison.shownName, comparison.path, now.size,
               comparison.expected->size);
  }
  return say("{0}: '{1}' was changed: its SHA-256 is {2} and was {3}.", comparison.shownName, comparison.path,
             now.sha256, comparison.expected->sha256);
}

/// What stands where nothing was, or where something of another kind was.
void addChangedPlaces(const fs::path& folder, const Evidence& evidence, std::vector<std::string>& differences) {
  for (const EvidencePlace& place : evidence.absent) {
    const fs::path path = folder / place.file;
    std::error_code error;
    if (!fs::exists(fs::symlink_status(path, error))) continue;
    differences.push_back(say("'{0}' was added: there was no such file when the report was made.", path.string()));
  }
  for (const UnreadAttachment& attachment : evidence.unreadAttachments) {
    const fs::path path = folder / attachment.place.file;
    std::error_code error;
    const bool isThere = fs::exists(path, error);
    const bool isSame = attachment.why == UnreadAttachment::Why::kUnreadable || whyUnread(path) == attachment.why;
    if (isThere && isSame) continue;
    differences.push_back(
        say("The attachment '{0}' is no longer what it was when the report was made.", path.string()));
  }
}

}  // namespace

StoreResult<EvidenceFindings> checkEvidence(const std::string& path, const EvidenceCheckOptions& options) {
  const auto text = readManifest(path);
  if (!text) return text.problem();
  const std::string sha256 = digestOf(text.value()).sha256;
  if (options.expected && *options.expected != sha256) {
    return StoreProblem{
        say("'{0}' is not the evidence that was written with the report: its SHA-256 is {1} and should "
            "be {2}.",
            path, sha256, *options.expected)};
  }
  auto parsed = parseEvidence(text.value());
  if (!parsed) return StoreProblem{"'" + path + "': " + parsed.problem().sentence};
  EvidenceFindings findings;
  findings.sha256 = sha256;
  findings.evidence = std::move(parsed.value());
  const Evidence& evidence = findings.evidence;

  std::vector<Comparison> comparisons;
  comparisons.push_back(
      {(fs::path(path).parent_path() / evidence.reportName).string(), say("The report"), &evidence.report});
  if (!options.reportOnly) {
    const std::string source = options.source.value_or(evidence.source.path);
    std::error_code error;
    if (!fs::exists(source, error)) {
      return StoreProblem{say(
          "The source '{0}' is not there; give its place with --source, or check the report alone with --report-only.",
          source)};
    }
    const fs::path folder = fs::is_directory(source, error) ? fs::path(source) : fs::path(source).parent_path();
    const auto add = [&](const std::vector<EvidenceFile>& files, const std::string& what) {
      for (const EvidenceFile& file : files) {
        comparisons.push_back({(folder / file.file).string(), what + " '" + file.name + "'", &file.digest});
      }
      return files.size();
    };
    findings.checkedStores = add(evidence.stores, say("The store"));
    findings.checkedAttachments = add(evidence.attachments, say("The attachment"));
    addChangedPlaces(folder, evidence, findings.differences);
  }

  std::uint64_t total = 0, done = 0;
  for (const Comparison& comparison : comparisons) total += comparison.expected->size;
  const auto advanced = [&](std::uint64_t bytes) {
    done += bytes;
    if (options.progress) options.progress(done, total);
  };
  for (const Comparison& comparison : comparisons) {
    if (auto difference = differenceOf(comparison, advanced)) findings.differences.push_back(std::move(*difference));
  }
  return findings;
}

}  // namespace chatsum::device
