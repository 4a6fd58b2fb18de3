// What was read of a source, as digests of the very bytes, so that it can be compared later with what stands there. One
// thread at a time.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "hosts/device/stores/FileDigest.h"

namespace chatsum::device {

class ReadDigests {
 public:
  struct Reading {
    std::optional<FileDigest> digest;  ///< none: there was no file
    bool isSteady = true;              ///< false: it was read more than once, and differed
  };

  /// The file at `path` was read whole, or was looked for and not there.
  void note(const std::string& path, const std::optional<FileDigest>& digest) {
    const auto [known, isNew] = readings_.try_emplace(path, Reading{digest});
    if (!isNew && known->second.digest != digest) known->second.isSteady = false;
  }
  /// Null when it was not looked at.
  [[nodiscard]] const Reading* find(const std::string& path) const {
    const auto known = readings_.find(path);
    return known == readings_.end() ? nullptr : &known->second;
  }

 private:
  std::map<std::string, Reading> readings_;
};

}  // namespace chatsum::device
