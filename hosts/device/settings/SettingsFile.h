// The user's settings as a file that is read, changed one key at a time, and written in one step. One thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "hosts/device/stores/StoreProblem.h"
#include "platform/foundation/Value.h"
#include "platform/system/propertylists/PropertyListFile.h"

namespace chatsum::device {

class SettingsFile {
 public:
  /// A missing file is one without keys. The problem when there is a file that cannot be read, or that is no property
  /// list.
  [[nodiscard]] static StoreResult<SettingsFile> read(const std::string& home);

  [[nodiscard]] const std::string& path() const { return path_; }
  /// Everything in the file, as the library sees it.
  [[nodiscard]] const Record& values() const { return values_; }
  /// Writes the file with this value (a boolean or an integer) under the key; everything else in it stays. A new file
  /// is XML, an old one stays what it is.
  [[nodiscard]] std::optional<StoreProblem> write(std::string_view key, const Value& value);

 private:
  SettingsFile(std::string path, platform::system::PropertyListFile file);

  std::string path_;
  platform::system::PropertyListFile file_;
  Record values_;
};

}  // namespace chatsum::device
