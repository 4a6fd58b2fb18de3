#include "hosts/device/reports/EarlierReports.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <memory>
#include <set>

#include "hosts/device/evidence/EvidenceManifest.h"
#include "hosts/device/language/Say.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/ChatsumUtils/ReportPlaces.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum::device {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

/// The library takes a folder that it cannot read for an empty one; a person should know.
std::optional<StoreProblem> checkFolder(const std::string& folder) {
  const std::unique_ptr<DIR, CloseFolder> opened(::opendir(folder.c_str()));
  if (opened || errno == ENOENT) return std::nullopt;
  return StoreProblem{say("The reports folder '{0}' cannot be read ({1}).", folder, std::strerror(errno))};
}

bool isFile(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

EarlierReport reportOf(const Record& entry, std::int64_t appType) {
  EarlierReport report{.name = entry[report_entry::kName].description(),
                       .path = entry[report_entry::kPath].description(),
                       .size = std::nullopt,
                       .created = std::nullopt,
                       .appType = appType};
  if (const Value* size = entry.find(report_entry::kSize)) {
    report.size = static_cast<std::uint64_t>(size->integerValue());
  }
  if (const Date* date = entry[report_entry::kCreationDate].asDate()) report.created = *date;
  return report;
}

bool isBefore(const EarlierReport& one, const EarlierReport& other) {
  constexpr double kNever = -std::numeric_limits<double>::infinity();
  const double time = one.created ? one.created->secondsSince1970 : kNever;
  const double otherTime = other.created ? other.created->secondsSince1970 : kNever;
  return time != otherTime ? time > otherTime : one.name < other.name;
}

}  // namespace

StoreResult<std::vector<EarlierReport>> earlierReports(const Containers& containers) {
  std::vector<EarlierReport> reports;
  for (std::size_t code = 0; code < kHostApplications.size(); ++code) {
    const auto container = containers.find(kHostApplications.at(code));
    if (container == containers.end()) continue;
    const std::string folder = container->second + kReportsPath;
    if (auto problem = checkFolder(folder)) return *problem;
    const auto appType = static_cast<std::int64_t>(code);
    const auto byExtension = ChatsumUtils::allGeneratedReports(appType, folder);
    for (std::size_t i = 0; i < byExtension.size(); ++i) {
      for (const Value& entry : *byExtension.valueAt(i).asArray()) {
        EarlierReport report = reportOf(*entry.asRecord(), appType);
        if (isEvidenceName(report.name)) continue;
        if (!report.name.starts_with('.') && isFile(report.path)) reports.push_back(std::move(report));
      }
    }
  }
  std::sort(reports.begin(), reports.end(), isBefore);
  return reports;
}

StoreResult<EarlierReport> findReport(const std::vector<EarlierReport>& reports, std::string_view name) {
  std::vector<const EarlierReport*> found;
  for (const EarlierReport& report : reports) {
    if (report.name == name) found.push_back(&report);
  }
  if (found.size() == 1) return *found.front();
  if (found.empty()) return StoreProblem{say("There is no report '{0}'; 'chatsum reports' lists them.", name)};
  std::string homes;
  constexpr std::size_t kBelowHome = 4;  // Library/Preferences/Chatsum/NAME
  for (const EarlierReport* report : found) {
    std::string home = report->path;
    for (std::size_t i = 0; i < kBelowHome; ++i) home = path::deletingLastComponent(home);
    homes = homes.empty() ? "'" + home + "'" : say("{0} or '{1}'", homes, home);
  }
  return StoreProblem{say("Several applications have a report '{0}'; say which one with --home {1}.", name, homes)};
}

std::optional<StoreProblem> removeReport(const EarlierReport& report) {
  // Never more than the file, whatever stands there by now.
  if (::unlink(report.path.c_str()) == 0 || errno == ENOENT) {
    removeEvidenceOf(report.path);
    return std::nullopt;
  }
  return StoreProblem{say("The report '{0}' cannot be deleted ({1}).", report.path, std::strerror(errno))};
}

}  // namespace chatsum::device
