// Property lists: the files that keep settings. All operations may be called from any thread.
#pragma once

#include <optional>
#include <string>

#include "platform/foundation/Value.h"

namespace chatsum::platform {

class PropertyLists {
 public:
  virtual ~PropertyLists() = default;
  /// The dictionary at the top of a property-list file, XML or binary, with its keys in the file's order. Numbers,
  /// booleans, strings, dates, arrays and dictionaries become values; data (bytes) is a none value. None when the file
  /// cannot be read, is no property list, or holds something else than a dictionary.
  [[nodiscard]] virtual std::optional<Record> dictionary(const std::string& path) const = 0;
};

}  // namespace chatsum::platform
