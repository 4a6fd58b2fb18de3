// Finds what may be given as a source, in the places where backups and Macs keep it or below given folders. No store is
// opened and no password asked. No state, any thread.
#pragma once

#include <string>
#include <vector>

#include "hosts/device/source/FolderWalk.h"
#include "hosts/device/source/SourceFacts.h"

namespace chatsum::device {

/// A folder whose folders, some levels below, are disks.
struct VolumesFolder {
  std::string path;
  int levels = 1;
};

/// Where this machine keeps what people have.
struct SearchRoots {
  std::vector<std::string> homes;      ///< of users
  std::vector<VolumesFolder> volumes;  ///< each disk may have a folder Users that holds homes

  /// The home of the one who runs the program (`$HOME`), and where Linux, Windows' own Linux, and macOS mount disks.
  [[nodiscard]] static SearchRoots ofThisMachine();
};

struct FoundSources {
  std::vector<SourceFacts> sources;  ///< each once, the newest backups first, what has no date behind them by path
  std::vector<std::string> places;   ///< where was looked, in words
  std::vector<std::string> notes;    ///< sentences: what may not be read, where the search ended early
};

/// Looks in the usual places: the folders of backups of macOS and Windows in each home, and the home itself.
[[nodiscard]] FoundSources findSources(const SearchRoots& roots);

/// Looks at the folders and what is below them, without following links. What is inside a source is passed over, but
/// for the backups in a Mac's home.
[[nodiscard]] FoundSources findSourcesBelow(const std::vector<std::string>& folders,
                                            const FolderWalkLimits& limits = {.depth = 8, .entries = 100'000});

}  // namespace chatsum::device
