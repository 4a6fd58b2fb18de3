#include "hosts/device/source/SourceFolder.h"

#include <sys/stat.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <system_error>
#include <vector>

namespace chatsum::device {
namespace {

constexpr int kMostLinks = 40;

std::deque<std::string> componentsOf(std::string_view path) {
  std::deque<std::string> components;
  while (!path.empty()) {
    const auto slash = std::min(path.find('/'), path.size());
    if (slash > 0) components.emplace_back(path.substr(0, slash));
    path.remove_prefix(std::min(slash + 1, path.size()));
  }
  return components;
}

}  // namespace

SourceFolder::SourceFolder(const std::string& path) : path_(path) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::canonical(path, error);
  if (!error) path_ = real.string();
  while (path_.size() > 1 && path_.back() == '/') path_.pop_back();
}

std::optional<std::string> SourceFolder::resolve(std::string_view devicePath) const {
  std::deque<std::string> todo = componentsOf(devicePath);
  std::vector<std::string> done;
  const auto joined = [&] {
    std::string path = path_ == "/" ? "" : path_;
    for (const std::string& component : done) path.append("/").append(component);
    return path.empty() ? std::string("/") : path;
  };
  int links = 0;
  while (!todo.empty()) {
    const std::string component = std::move(todo.front());
    todo.pop_front();
    if (component == ".") continue;
    if (component == "..") {
      if (!done.empty()) done.pop_back();
      continue;
    }
    done.push_back(component);
    const std::string path = joined();
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) return std::nullopt;
    if (!S_ISLNK(status.st_mode)) continue;

    std::error_code error;
    std::string target = std::filesystem::read_symlink(path, error).string();
    if (error || target.empty() || ++links > kMostLinks) return std::nullopt;
    done.pop_back();
    if (target.starts_with('/')) {
      done.clear();
      // A link that was made on this machine may spell out where the folder stands.
      if (path_ != "/" && target.starts_with(path_ + "/")) target.erase(0, path_.size());
    }
    std::deque<std::string> rest = componentsOf(target);
    todo.insert(todo.begin(), rest.begin(), rest.end());
  }
  return joined();
}

}  // namespace chatsum::device
