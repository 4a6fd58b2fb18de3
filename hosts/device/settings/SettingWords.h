// The settings in words that people use. No state, any thread.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "hosts/device/language/Say.h"
#include "platform/foundation/Value.h"

namespace chatsum::device {

struct Setting {
  enum class Kind { kSwitch, kFileFormat, kSortOrder };
  std::string_view key;  ///< in the settings file
  Kind kind;
  std::string_view about;  ///< what it is for, one phrase in English; said() translates it
};

/// Every setting, in the order in which they are shown.
[[nodiscard]] std::span<const Setting> allSettings();
/// The setting of that name, in any case; nullptr when there is none.
[[nodiscard]] const Setting* findSetting(std::string_view name);

/// What the file has to hold for a word such as "pdf", "desc", "yes" or "1"; none when the word means nothing for this
/// setting.
[[nodiscard]] std::optional<Value> valueOfWord(const Setting& setting, std::string_view word);
/// The words that it takes: "csv, pdf or text (0, 1 or 2)".
[[nodiscard]] std::string wordsOf(const Setting& setting);

/// The word for a value of the file, converted as the library converts it; a number that means nothing as it is. A none
/// value gives the default: "no", "csv", "asc".
[[nodiscard]] std::string wordOfValue(const Setting& setting, const Value& value);

}  // namespace chatsum::device
