// What the user has set: whether the feature is on, and how reports of messages are made by default. One shared object,
// read from one property-list file when it is first asked for. The properties are plain memory without a lock.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "libchatsum/Export.h"
#include "platform/foundation/Value.h"

namespace chatsum {

/// The keys of the settings file.
namespace settings {
inline constexpr std::string_view kEnabled = "ChatsumEnabled";
inline constexpr std::string_view kEnabledMessages = "ChatsumEnabledMessages";
inline constexpr std::string_view kEnabledPhone = "ChatsumEnabledPhone";
inline constexpr std::string_view kMessagesFileFormat = "ChatsumMessagesDefaultFileFormat";
inline constexpr std::string_view kMessagesDateSortOrder = "ChatsumMessagesDefaultDateSortOrder";
}  // namespace settings

class CHATSUM_EXPORT ChatsumSettings {
 public:
  /// The one instance, loaded at the first call and kept until the process ends. Any thread.
  static ChatsumSettings& sharedSettings();

  /// Loads the settings.
  ChatsumSettings();

  /// Reads the settings file and sets all five properties from it; a key that is missing, or a file that cannot be
  /// read, sets the default: false or 0.
  void loadSettings();

  /// The dictionary in a property-list file, none when it cannot be read. The application identifier is not used.
  static std::optional<Record> settingsDictionary(const std::string& path, std::string_view appID);

  /// Where the settings stand: a relative path, which the host resolves.
  static std::string settingsPath();

  // The setters change memory only.

  [[nodiscard]] bool isChatsumEnabled() const { return isChatsumEnabled_; }
  void setIsChatsumEnabled(bool value) { isChatsumEnabled_ = value; }
  [[nodiscard]] bool isChatsumEnabledMessages() const { return isChatsumEnabledMessages_; }
  void setIsChatsumEnabledMessages(bool value) { isChatsumEnabledMessages_ = value; }
  [[nodiscard]] bool isChatsumEnabledPhone() const { return isChatsumEnabledPhone_; }
  void setIsChatsumEnabledPhone(bool value) { isChatsumEnabledPhone_ = value; }
  /// A File format code.
  [[nodiscard]] std::int64_t msgDefaultFileFormat() const { return msgDefaultFileFormat_; }
  void setMsgDefaultFileFormat(std::int64_t value) { msgDefaultFileFormat_ = value; }
  /// 0 is oldest first, any other number newest first.
  [[nodiscard]] std::int64_t msgDefaultDateSortOrder() const { return msgDefaultDateSortOrder_; }
  void setMsgDefaultDateSortOrder(std::int64_t value) { msgDefaultDateSortOrder_ = value; }

 private:
  bool isChatsumEnabled_ = false;
  bool isChatsumEnabledMessages_ = false;
  bool isChatsumEnabledPhone_ = false;
  std::int64_t msgDefaultFileFormat_ = 0;
  std::int64_t msgDefaultDateSortOrder_ = 0;
};

}  // namespace chatsum
