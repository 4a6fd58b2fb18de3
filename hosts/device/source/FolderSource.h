// Where the stores of a device lie in a copy of its file system, however that copy was made. Immutable, any thread.
#pragma once

#include <optional>
#include <string>

#include "hosts/device/source/SourceFolder.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// The paths under which the library asks for the stores.
inline constexpr const char* kMessagesStorePath = "/var/mobile/Library/SMS/sms.db";
inline constexpr const char* kAddressBookPath = "/var/mobile/Library/AddressBook/AddressBook.sqlitedb";

class DeviceSource {
 public:
  /// Looks for the user's folder below `path`, a folder that mirrors a device's "/": `private/var/mobile`, `var/mobile`
  /// or `mobile`, then `User`. The problem says where a Messages store was looked for.
  [[nodiscard]] static StoreResult<DeviceSource> find(const std::string& path);

  /// The real path of the Messages store.
  [[nodiscard]] const std::string& messagesStore() const { return messagesStore_; }
  /// The real path of the address book; none when the copy has none.
  [[nodiscard]] const std::optional<std::string>& addressBook() const { return addressBook_; }

  /// The real path of a file that a message names: "User/Library/…" (where "User" may be a link, a folder, or missing),
  /// "~/Library/…", "/var/mobile/Library/…", "/private/var/mobile/Library/…". None when there is no such file in the
  /// source, and for every other path.
  [[nodiscard]] std::optional<std::string> fileOfMessage(std::string_view devicePath) const;

 private:
  explicit DeviceSource(SourceFolder folder) : folder_(std::move(folder)) {}

  SourceFolder folder_;
  std::string mobile_;  // the user's folder, as a path of the device
  std::string messagesStore_;
  std::optional<std::string> addressBook_;
};

}  // namespace chatsum::device
