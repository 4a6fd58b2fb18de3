#include "hosts/device/settings/SettingWords.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "hosts/device/language/Say.h"
#include "libchatsum/ChatsumSettings/ChatsumSettings.h"

namespace chatsum::device {
namespace {

using Kind = Setting::Kind;

constexpr std::array<Setting, 5> kSettings = {{
    {settings::kEnabled, Kind::kSwitch,
     toSay("Reports at all, in applications that ask for it (this program does not)")},
    {settings::kEnabledMessages, Kind::kSwitch, toSay("Reports of messages, in such applications")},
    {settings::kEnabledPhone, Kind::kSwitch, toSay("Reports of calls, in such applications")},
    {settings::kMessagesFileFormat, Kind::kFileFormat, toSay("The format of reports when --format is not given")},
    {settings::kMessagesDateSortOrder, Kind::kSortOrder, toSay("The order of reports when --sort is not given")},
}};

struct Word {
  std::string_view word;
  std::int64_t value;
};

// The first word for a value is the one that is shown.
constexpr std::array<Word, 8> kSwitchWords = {
    {{"yes", 1}, {"no", 0}, {"true", 1}, {"false", 0}, {"on", 1}, {"off", 0}, {"1", 1}, {"0", 0}}};
constexpr std::array<Word, 7> kFormatWords = {
    {{"csv", 0}, {"pdf", 1}, {"text", 2}, {"txt", 2}, {"0", 0}, {"1", 1}, {"2", 2}}};
constexpr std::array<Word, 6> kOrderWords = {
    {{"asc", 0}, {"desc", 1}, {"ascending", 0}, {"descending", 1}, {"0", 0}, {"1", 1}}};

std::span<const Word> wordsFor(Kind kind) {
  switch (kind) {
    case Kind::kSwitch:
      return kSwitchWords;
    case Kind::kFileFormat:
      return kFormatWords;
    case Kind::kSortOrder:
      break;
  }
  return kOrderWords;
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isSame(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char a, char b) { return lower(a) == lower(b); });
}

}  // namespace

std::span<const Setting> allSettings() { return kSettings; }

const Setting* findSetting(std::string_view name) {
  const auto found = std::find_if(kSettings.begin(), kSettings.end(),
                                  [&](const Setting& setting) { return isSame(setting.key, name); });
  return found == kSettings.end() ? nullptr : &*found;
}

std::optional<Value> valueOfWord(const Setting& setting, std::string_view word) {
  for (const Word& known : wordsFor(setting.kind)) {
    if (!isSame(known.word, word)) continue;
    return setting.kind == Kind::kSwitch ? Value(known.value != 0) : Value(known.value);
  }
  return std::nullopt;
}

std::string wordsOf(const Setting& setting) {
  switch (setting.kind) {
    case Kind::kSwitch:
      return say("yes or no (1 or 0)");
    case Kind::kFileFormat:
      return say("csv, pdf or text (0, 1 or 2)");
    case Kind::kSortOrder:
      break;
  }
  return say("asc or desc (0 or 1)");
}

std::string wordOfValue(const Setting& setting, const Value& value) {
  // What a none value converts to is the library's default.
  std::int64_t number = value.integerValue();
  if (setting.kind == Kind::kSwitch) {
    number = value.boolValue() ? 1 : 0;
  } else if (setting.kind == Kind::kSortOrder) {
    number = number != 0 ? 1 : 0;  // every other number means the newest first
  }
  for (const Word& known : wordsFor(setting.kind)) {
    if (known.value == number) return std::string(known.word);
  }
  return std::to_string(number);
}

}  // namespace chatsum::device
