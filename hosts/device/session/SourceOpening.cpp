#include "hosts/device/session/SourceOpening.h"

#include <sys/stat.h>

#include "hosts/device/backup/BackupSource.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/mac/MacSource.h"
#include "hosts/device/session/FileOpening.h"
#include "hosts/device/session/SourceSearch.h"
#include "hosts/device/source/FolderSource.h"
#include "hosts/device/source/SourceFiles.h"

namespace chatsum::device {
namespace {

constexpr FolderWalkLimits kNearby = {.depth = 3, .entries = 20'000};
constexpr std::size_t kMostNamed = 5;

bool isFile(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

/// What to say of a folder that is no source: which ones are below it, else the problem.
StoreProblem describe(const std::string& folder, const StoreProblem& problem) {
  const FoundSources found = findSourcesBelow({folder}, kNearby);
  if (found.sources.empty()) return problem;
  std::vector<std::string> named;
  for (const SourceFacts& facts : found.sources) {
    if (named.size() < kMostNamed) named.push_back("'" + facts.path + "' (" + said(wordOf(facts.kind)) + ")");
  }
  if (found.sources.size() > named.size()) {
    named.push_back(say("and {0} more", found.sources.size() - named.size()));
  }
  return {say("'{0}' is no source itself, but below it are {1}; give one of these.", folder, listed(named))};
}

StoreResult<std::unique_ptr<DeviceSource>> open(const std::string& path, const SourceAccess& access) {
  if (isFile(path)) return openStoreFile(path);
  if (BackupSource::isBackup(path)) return BackupSource::open(path, access);
  if (MacSource::isMacHome(path)) return MacSource::open(path);
  auto device = FolderSource::find(path);
  if (device) return device;
  if (const auto file = storeFileIn(path)) return openStoreFile(*file);
  return describe(path, device.problem());
}

}  // namespace

StoreResult<std::unique_ptr<DeviceSource>> openSource(const std::string& path, const SourceAccess& access) {
  auto source = open(path, access);
  if (source) source.value()->keepDigests(access.digests);
  return source;
}

std::optional<SourceFacts> sourceFactsAt(const std::string& path) {
  if (BackupSource::isBackup(path)) return BackupSource::factsOf(path);
  const auto source = openSource(path, {});
  return source ? std::optional(source.value()->facts()) : std::nullopt;
}

}  // namespace chatsum::device
