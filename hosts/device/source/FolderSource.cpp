#include "hosts/device/source/DeviceSource.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

namespace chatsum::device {
namespace {

constexpr std::array<std::string_view, 4> kMobileFolders = {"private/var/mobile", "var/mobile", "mobile", "User"};
constexpr std::string_view kStoreInMobile = "/Library/SMS/sms.db";
constexpr std::string_view kAddressBookInMobile = "/Library/AddressBook/AddressBook.sqlitedb";

std::optional<StoreProblem> checkFolder(const std::string& path) {
  struct stat status {};
  if (path.empty()) return StoreProblem{"The source has no name; give the folder of the device after --source."};
  if (::stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return StoreProblem{"There is no folder '" + path + "'; check the path."};
    return StoreProblem{"The folder '" + path + "' cannot be read (" + std::strerror(errno) +
                        "); check its permissions."};
  }
  if (!S_ISDIR(status.st_mode)) {
    return StoreProblem{
        "'" + path +
        "' is a file; give a folder that mirrors a device's file system, with var/mobile/Library/SMS/sms.db "
        "below it."};
  }
  return std::nullopt;
}

StoreProblem describeMissing(const std::string& path, const SourceFolder& folder) {
  if (folder.resolve("Manifest.db") || folder.resolve("Manifest.mbdb")) {
    return {"'" + path + "' is a backup, which cannot be read yet; give a folder that mirrors a device's file system."};
  }
  std::string places, aloneWal;
  for (const std::string_view mobile : kMobileFolders) {
    const std::string store = std::string(mobile) + std::string(kStoreInMobile);
    places.append(places.empty() ? "" : ", ").append(store);
    if (aloneWal.empty() && folder.resolve(store + "-wal")) aloneWal = store;
  }
  if (!aloneWal.empty()) {
    return {"'" + path + "' holds only '" + aloneWal +
            "-wal': the Messages store sms.db itself is missing beside it; copy both from the device."};
  }
  return {"There is no Messages store below '" + path + "': looked for " + places +
          "; give the folder that mirrors the device's '/'."};
}

}  // namespace

StoreResult<DeviceSource> DeviceSource::find(const std::string& path) {
  if (auto problem = checkFolder(path)) return *problem;
  DeviceSource source{SourceFolder(path)};
  for (const std::string_view mobile : kMobileFolders) {
    const auto store = source.folder_.resolve(std::string(mobile) + std::string(kStoreInMobile));
    if (!store) continue;
    source.mobile_ = mobile;
    source.messagesStore_ = *store;
    source.addressBook_ = source.folder_.resolve(source.mobile_ + std::string(kAddressBookInMobile));
    return source;
  }
  return describeMissing(path, source.folder_);
}

std::optional<std::string> DeviceSource::fileOfMessage(std::string_view devicePath) const {
  constexpr std::array<std::string_view, 5> kStarts = {"User/", "/User/", "~/", "/var/mobile/", "/private/var/mobile/"};
  for (const std::string_view start : kStarts) {
    if (!devicePath.starts_with(start)) continue;
    const std::string rest = "/" + std::string(devicePath.substr(start.size()));
    if (auto file = folder_.resolve(mobile_ + rest)) return file;
    return folder_.resolve("User" + rest);
  }
  return std::nullopt;
}

}  // namespace chatsum::device
