// The reports that were made earlier, and names for new ones.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/ChatsumUtils/ReportPlaces.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

/// Of the applications in the order of the App types.
constexpr std::array<const char*, kAppFolderNames.size()> kBundleIdentifiers = {
    "com.apple.MobileSMS", "com.apple.mobilephone", "com.apple.facetime"};

/// Of the File formats in the order of their codes: CSV, PDF, Text.
constexpr std::array<const char*, 3> kExtensions = {"csv", "pdf", "txt"};

/// Makes Report entries; those with both facts share their list of keys.
class EntryMaker {
 public:
  [[nodiscard]] Record make(const std::string& folder, const std::string& name) const {
    const auto facts = platform::current().files.attributes(folder + "/" + name);
    Value path = path::appending(folder, name);
    if (facts.creationDate && facts.size) {
      std::array<Value, 4> values = {name, std::move(path), *facts.creationDate, *facts.size};
      return {shape_, values.data()};
    }
    Record entry = {{report_entry::kName, name}, {report_entry::kPath, std::move(path)}};
    if (facts.creationDate) entry.set(report_entry::kCreationDate, *facts.creationDate);
    if (facts.size) entry.set(report_entry::kSize, *facts.size);
    return entry;
  }

 private:
  Ref<Shape> shape_ =
      Shape::of({report_entry::kName, report_entry::kPath, report_entry::kCreationDate, report_entry::kSize});
};

/// The entries of one extension, with what they are sorted by: seconds, those without a date after all others.
struct Group {
  std::vector<std::pair<double, Value>> entries;

  void add(Record entry) {
    const Date* date = entry[report_entry::kCreationDate].asDate();
    entries.emplace_back(date ? date->secondsSince1970 : -std::numeric_limits<double>::infinity(), std::move(entry));
  }

  Array newestFirst() {
    std::stable_sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<Value> items;
    items.reserve(entries.size());
    for (auto& entry : entries) items.push_back(std::move(entry.second));
    return Array(std::move(items));
  }
};

}  // namespace

ChatsumUtils::ReportsByExtension ChatsumUtils::allGeneratedReports(std::int64_t, const std::string& fromDirectory) {
  constexpr int kMissingLine = 809;
  if (!isFolderAlreadyExists(fromDirectory)) {
    logging::warning("+[ChatsumUtils allGeneratedReports:fromDirectory:]", kMissingLine,
                     "Folder doesn't exists at: " + fromDirectory);
    return {};
  }
  const auto names = platform::current().files.list(fromDirectory).value_or(std::vector<std::string>());
  const EntryMaker maker;
  std::vector<String> extensions;
  std::vector<Group> groups;
  std::unordered_map<std::string, std::size_t> places;
  for (const std::string& name : names) {
    std::string extension = path::extension(name);
    const auto [place, isNew] = places.try_emplace(std::move(extension), groups.size());
    if (isNew) {
      extensions.emplace_back(place->first);
      groups.emplace_back();
    }
    groups[place->second].add(maker.make(fromDirectory, name));
  }
  // In one piece: a record finds each key that is set by looking through those before it.
  std::vector<Value> lists;
  lists.reserve(groups.size());
  for (Group& group : groups) lists.emplace_back(group.newestFirst());
  return {Ref<Shape>::adopt(new Shape(std::move(extensions))), lists.data()};
}

ChatsumUtils::ReportsByExtension ChatsumUtils::allGeneratedReports(std::int64_t appType) {
  return allGeneratedReports(appType, defaultLocation(appType));
}

ChatsumUtils::ReportsByAppType ChatsumUtils::allGeneratedReports() {
  ReportsByAppType reports;
  for (std::size_t i = 0; i < kBundleIdentifiers.size(); ++i) {
    const auto container = platform::current().companion.applicationDataContainerDirectory(kBundleIdentifiers[i]);
    if (!container) continue;
    const auto appType = static_cast<std::int64_t>(i);
    reports[appType] = allGeneratedReports(appType, *container + kReportsPath);
  }
  return reports;
}

ChatsumUtils::ReportsByAppType ChatsumUtils::allAppSpecificGeneratedReports(std::int64_t appType) {
  constexpr int kGettingLine = 759;
  logging::information("+[ChatsumUtils allAppSpecificGeneratedReports:]", kGettingLine,
                       "Getting all reports for " + std::to_string(appType));
  return {{appType, allGeneratedReports(appType)}};
}

std::string ChatsumUtils::defaultFileName(std::string_view name, std::int64_t appType, std::int64_t fileFormat) {
  const auto withExtension = [&](const std::string& base) {
    if (static_cast<std::uint64_t>(fileFormat) >= kExtensions.size()) return base;
    return path::appendingExtension(base, kExtensions[static_cast<std::size_t>(fileFormat)]);
  };
  const std::string base(name);
  std::string candidate = withExtension(base);
  for (std::int32_t n = 1; isFileAlreadyExists(candidate, appType); ++n) {
    candidate = withExtension(base + " - " + std::to_string(n));
  }
  return candidate;
}

}  // namespace chatsum
