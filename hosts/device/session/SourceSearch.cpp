#include "hosts/device/session/SourceSearch.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "hosts/device/backup/BackupSource.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/mac/MacSource.h"
#include "hosts/device/session/FileOpening.h"
#include "hosts/device/source/FolderSource.h"
#include "hosts/device/source/SourceFiles.h"
#include "hosts/device/source/SourceFolder.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

// In a home: of macOS, of iTunes, and of the programs from Microsoft's store.
constexpr std::array<const char*, 3> kBackupFolders = {"Library/Application Support/MobileSync/Backup",
                                                       "AppData/Roaming/Apple Computer/MobileSync/Backup",
                                                       "Apple/MobileSync/Backup"};
constexpr std::size_t kMostEntries = 1000;  // in one of the usual folders

/// The folders in a folder, also by links, in the order of their names.
std::vector<std::string> foldersIn(const std::string& folder) {
  std::vector<std::string> paths;
  std::error_code error;
  std::size_t left = kMostEntries;
  for (fs::directory_iterator entry(folder, error); !error && left > 0 && entry != fs::directory_iterator();
       entry.increment(error), --left) {
    std::error_code ignored;
    if (entry->is_directory(ignored)) paths.push_back(entry->path().string());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

class Collector {
 public:
  /// Adds what the folder is, if it is a source, and answers whether it is one.
  bool addFolder(const std::string& folder) {
    if (BackupSource::isBackup(folder)) return add(BackupSource::factsOf(folder));
    if (MacSource::isMacHome(folder)) {
      const auto source = MacSource::open(folder);
      return source && add(source.value()->facts());
    }
    if (!FolderSource::isDevice(folder)) return false;
    const auto source = FolderSource::find(folder);
    return source && add(source.value()->facts());
  }

  void addFile(const std::string& file) {
    if (const auto source = openStoreFile(file)) add(source.value()->facts());
  }

  /// The backups in a folder of backups.
  void addBackups(const std::string& folder) {
    if (auto problem = checkReadable(folder)) {
      found_.notes.push_back(std::move(problem->sentence));
      return;
    }
    for (const std::string& path : foldersIn(folder)) {
      if (BackupSource::isBackup(path)) addFolder(path);
    }
  }

  void lookedIn(const std::string& place) { found_.places.push_back(place); }
  void note(const std::string& sentence) { found_.notes.push_back(sentence); }

  FoundSources finish() {
    std::stable_sort(found_.sources.begin(), found_.sources.end(), [](const SourceFacts& a, const SourceFacts& b) {
      if (a.date && b.date) return *b.date < *a.date;
      if (a.date || b.date) return a.date.has_value();
      return a.path < b.path;
    });
    return std::move(found_);
  }

 private:
  bool add(const SourceFacts& facts) {
    if (paths_.insert(facts.path).second) found_.sources.push_back(facts);
    return true;
  }

  FoundSources found_;
  std::set<std::string> paths_;
};

void lookIntoHome(const std::string& home, Collector& collector) {
  for (const char* const folder : kBackupFolders) collector.addBackups(home + "/" + folder);
  if (MacSource::isMacHome(home)) collector.addFolder(home);
}

void lookIntoVolumes(const std::string& folder, int levels, Collector& collector) {
  for (const std::string& path : foldersIn(folder)) {
    if (levels > 1) {
      lookIntoVolumes(path, levels - 1, collector);
      continue;
    }
    for (const std::string& home : foldersIn(path + "/Users")) lookIntoHome(home, collector);
  }
}

}  // namespace

SearchRoots SearchRoots::ofThisMachine() {
  SearchRoots roots;
  if (const char* home = std::getenv("HOME"); home && home[0] == '/') roots.homes.emplace_back(home);
  roots.volumes = {{"/Volumes", 1}, {"/mnt", 1}, {"/media", 1}, {"/media", 2}, {"/run/media", 2}};
  return roots;
}

FoundSources findSources(const SearchRoots& roots) {
  Collector collector;
  for (const std::string& home : roots.homes) {
    for (const char* const folder : kBackupFolders) collector.lookedIn(home + "/" + folder);
    collector.lookedIn(home + "/Library/Messages");
    lookIntoHome(home, collector);
  }
  std::set<std::string> named;
  for (const VolumesFolder& volumes : roots.volumes) {
    if (named.insert(volumes.path).second)
      collector.lookedIn(say("the users' folders of disks below {0}", volumes.path));
    lookIntoVolumes(volumes.path, volumes.levels, collector);
  }
  return collector.finish();
}

FoundSources findSourcesBelow(const std::vector<std::string>& folders, const FolderWalkLimits& limits) {
  Collector collector;
  for (const std::string& start : folders) {
    collector.lookedIn(start);
    const FolderWalkEnd end = walkFolders(SourceFolder(start).path(), limits, [&](const std::string& folder, int) {
      if (collector.addFolder(folder)) {
        // A Mac keeps its owner's backups, too.
        const SourceFolder home(folder);
        for (const char* const name : kBackupFolders) {
          if (const auto backups = home.resolve(name)) collector.addBackups(*backups);
        }
        return false;
      }
      if (const auto file = storeFileIn(folder)) collector.addFile(*file);
      return true;
    });
    if (!end.isComplete) {
      collector.note(say("There is too much below '{0}' to look at all of it; name folders further down.", start));
    }
    for (const std::string& folder : end.unreadable) collector.note(say("This folder cannot be listed: {0}.", folder));
  }
  return collector.finish();
}

}  // namespace chatsum::device
