#include "hosts/device/session/FileOpening.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>

#include "hosts/device/language/Say.h"
#include "hosts/device/mac/MacAddressBook.h"
#include "hosts/device/mac/MacSource.h"
#include "hosts/device/source/FileSource.h"
#include "hosts/device/source/FolderSource.h"

namespace chatsum::device {

StoreResult<std::unique_ptr<DeviceSource>> openStoreFile(const std::string& path) {
  std::error_code error;
  const std::string real = std::filesystem::canonical(path, error).string();
  if (error) return StoreProblem{say("The file '{0}' cannot be found ({1}); check the path.", path, error.message())};
  if (auto device = FolderSource::around(real)) return device;
  if (auto home = MacSource::around(real)) return home;
  return FileSource::open(real, convertMacBooks);
}

std::optional<std::string> storeFileIn(const std::string& folder) {
  for (const char* const name : {"sms.db", "chat.db", "CallHistory.storedata", "call_history.db"}) {
    std::string path = folder + (folder.ends_with('/') ? "" : "/") + name;
    struct stat status {};
    if (::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) return path;
  }
  return std::nullopt;
}

}  // namespace chatsum::device
