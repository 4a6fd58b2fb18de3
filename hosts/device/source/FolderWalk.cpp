#include "hosts/device/source/FolderWalk.h"

#include <algorithm>
#include <deque>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostUnreadable = 10;

/// Folders that hold no files, but without an end.
bool isOfTheSystem(std::string_view path) { return path == "/proc" || path == "/sys" || path == "/dev"; }

/// The names of the folders in a folder; counts everything in it.
std::vector<std::string> foldersIn(const std::string& folder, std::size_t& left, std::error_code& error) {
  std::vector<std::string> names;
  fs::directory_iterator entry(folder, error);
  for (; !error && left > 0 && entry != fs::directory_iterator(); entry.increment(error)) {
    --left;
    std::error_code ignored;
    if (entry->symlink_status(ignored).type() == fs::file_type::directory) {
      names.push_back(entry->path().filename().string());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

FolderWalkEnd walkFolders(const std::string& folder, const FolderWalkLimits& limits,
                          const std::function<bool(const std::string& folder, int depth)>& visit) {
  FolderWalkEnd end;
  std::size_t left = limits.entries;
  std::deque<std::pair<std::string, int>> todo = {{folder, 0}};
  while (!todo.empty()) {
    const auto [path, depth] = std::move(todo.front());
    todo.pop_front();
    if (!visit(path, depth) || depth >= limits.depth) continue;
    if (left == 0) {
      end.isComplete = false;
      continue;
    }
    if (isOfTheSystem(path)) continue;
    std::error_code error;
    for (const std::string& name : foldersIn(path, left, error)) {
      todo.emplace_back((path == "/" ? "" : path) + "/" + name, depth + 1);
    }
    const bool isRefused = error == std::errc::permission_denied || error == std::errc::operation_not_permitted;
    if (isRefused && end.unreadable.size() < kMostUnreadable) {
      end.unreadable.push_back("'" + path + "' (" + error.message() + ")");
    }
    if (left == 0) end.isComplete = false;
  }
  return end;
}

}  // namespace chatsum::device
