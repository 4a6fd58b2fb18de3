// The reports that were made earlier, for people: one list, files only, removed by name. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/home/Containers.h"
#include "hosts/device/stores/StoreProblem.h"
#include "platform/foundation/Date.h"

namespace chatsum::device {

struct EarlierReport {
  std::string name;  ///< with extension
  std::string path;
  std::optional<std::uint64_t> size;  ///< bytes
  std::optional<Date> created;
  std::int64_t appType = 0;
};

/// Those of every application that has a container, newest first, equal dates by name. Folders, hidden files and
/// manifests of evidence are left out. The problem when a folder of reports is there but cannot be read. The library
/// asks the current platform for them.
[[nodiscard]] StoreResult<std::vector<EarlierReport>> earlierReports(const Containers& containers);

/// The report of that name. The problem when there is none, when the name is a path, or when reports of several
/// applications have it.
[[nodiscard]] StoreResult<EarlierReport> findReport(const std::vector<EarlierReport>& reports, std::string_view name);

/// Removes the file, and the manifest of evidence beside it.
[[nodiscard]] std::optional<StoreProblem> removeReport(const EarlierReport& report);

}  // namespace chatsum::device
