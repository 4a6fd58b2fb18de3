// Goes through the folders below a folder, the near ones first. Links are not followed, and there is an end to it,
// however large or strange the tree is. No state, any thread.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace chatsum::device {

struct FolderWalkLimits {
  int depth = 4;                 ///< of the deepest folders; the first one is at 0
  std::size_t entries = 20'000;  ///< files and folders that are looked at
};

struct FolderWalkEnd {
  bool isComplete = true;               ///< false: there are more entries than the limit
  std::vector<std::string> unreadable;  ///< the first folders that the system refuses to list, with why
};

/// Calls `visit` with every folder from `folder` on, those of one folder in the order of their names. What is below a
/// folder is left out when `visit` answers false for it.
FolderWalkEnd walkFolders(const std::string& folder, const FolderWalkLimits& limits,
                          const std::function<bool(const std::string& folder, int depth)>& visit);

}  // namespace chatsum::device
