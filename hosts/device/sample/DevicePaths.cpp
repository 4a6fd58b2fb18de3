#include "hosts/device/sample/DevicePaths.h"

#include <system_error>

namespace chatsum::device {

namespace fs = std::filesystem;

fs::path messageStorePath(const fs::path& root) { return root / "var" / "mobile" / "Library" / "SMS" / "sms.db"; }

fs::path addressBookPath(const fs::path& root) {
  return root / "var" / "mobile" / "Library" / "AddressBook" / "AddressBook.sqlitedb";
}

bool holdsDevice(const fs::path& root) {
  std::error_code ignored;
  return fs::exists(messageStorePath(root), ignored) || fs::exists(addressBookPath(root), ignored);
}

std::string holdsDeviceSentence(const fs::path& root) {
  return "The folder " + root.string() + " already holds another device's data: choose an empty folder.";
}

void linkUserFolder(const fs::path& root) {
  std::error_code ignored;
  const fs::path user = root / "User";
  if (fs::symlink_status(user, ignored).type() != fs::file_type::not_found) return;
  fs::create_directory_symlink("var/mobile", user, ignored);
}

}  // namespace chatsum::device
