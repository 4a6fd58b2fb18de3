#include "libchatsum/ChatsumSettings/ChatsumSettings.h"

#include "libchatsum/Logging/Logging.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

constexpr const char* kFileName = "com.orbelle.chatsum.plist";
constexpr const char* kAppID = "com.orbelle.chatsum";

}  // namespace

ChatsumSettings& ChatsumSettings::sharedSettings() {
  static ChatsumSettings* const shared = [] {
    constexpr int kFirstTimeLine = 104;
    logging::information("+[ChatsumSettings sharedSettings]_block_invoke", kFirstTimeLine,
                         "Initiallizing settings for first time..");
    return new ChatsumSettings;  // never destroyed: the end of the process may need it
  }();
  return *shared;
}

ChatsumSettings::ChatsumSettings() { loadSettings(); }

void ChatsumSettings::loadSettings() {
  // A key that is missing reads as a none value, whose conversions are the defaults.
  const Record file = settingsDictionary(settingsPath(), kAppID).value_or(Record());
  isChatsumEnabled_ = file[settings::kEnabled].boolValue();
  isChatsumEnabledMessages_ = file[settings::kEnabledMessages].boolValue();
  isChatsumEnabledPhone_ = file[settings::kEnabledPhone].boolValue();
  msgDefaultFileFormat_ = file[settings::kMessagesFileFormat].integerValue();
  msgDefaultDateSortOrder_ = file[settings::kMessagesDateSortOrder].integerValue();
}

std::optional<Record> ChatsumSettings::settingsDictionary(const std::string& path, std::string_view /*appID*/) {
  return platform::current().propertyLists.dictionary(path);
}

std::string ChatsumSettings::settingsPath() {
  return path::appending(path::appending("User", "Library/Preferences"), kFileName);
}

}  // namespace chatsum
