#include "hosts/device/sample/DevicePaths.h"

#include <system_error>

#include "hosts/device/language/Say.h"

namespace chatsum::device {

namespace fs = std::filesystem;

fs::path messageStorePath(const fs::path& root) { return root / "var" / "mobile" / "Library" / "SMS" / "sms.db"; }

fs::path addressBookPath(const fs::path& root) {
  return root / "var" / "mobile" / "Library" / "AddressBook" / "AddressBook.sqlitedb";
}

fs::path callListPath(const fs::path& root) {
  return root / "var" / "mobile" / "Library" / "CallHistoryDB" / "CallHistory.storedata";
}

fs::path temporaryCallListPath(const fs::path& root) {
  return callListPath(root).parent_path() / "CallHistoryTemp.storedata";
}

fs::path oldCallListPath(const fs::path& root) {
  return root / "var" / "wireless" / "Library" / "CallHistory" / "call_history.db";
}

bool holdsDevice(const fs::path& root) {
  for (const auto& place : {messageStorePath(root), addressBookPath(root), callListPath(root),
                            temporaryCallListPath(root), oldCallListPath(root)}) {
    std::error_code ignored;
    if (fs::exists(place, ignored)) return true;
  }
  return false;
}

std::string holdsDeviceSentence(const fs::path& root) {
  return say("The folder {0} already holds another device's data: choose an empty folder.", root.string());
}

void linkUserFolder(const fs::path& root) {
  std::error_code ignored;
  const fs::path user = root / "User";
  if (fs::symlink_status(user, ignored).type() != fs::file_type::not_found) return;
  fs::create_directory_symlink("var/mobile", user, ignored);
}

}  // namespace chatsum::device
