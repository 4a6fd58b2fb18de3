#include "hosts/device/source/FolderSource.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <span>
#include <utility>

#include "hosts/device/language/Say.h"
#include "hosts/device/source/FolderWalk.h"
#include "hosts/device/source/MessagePaths.h"
#include "hosts/device/source/SourceFiles.h"

namespace chatsum::device {
namespace {

// The last one is a link or a name of its own, found at the top only.
constexpr std::array<std::string_view, 4> kMobileFolders = {"private/var/mobile", "var/mobile", "mobile", "User"};
constexpr auto kRealMobileFolders = std::span(kMobileFolders).first<3>();
constexpr FolderWalkLimits kWalk = {.depth = 5, .entries = 20'000};
constexpr std::size_t kMostNamed = 8;

constexpr std::string_view kMessagesInMobile = "/Library/SMS/sms.db";
constexpr std::string_view kAddressBookInMobile = "/Library/AddressBook/AddressBook.sqlitedb";
constexpr std::string_view kCallsInMobile = "/Library/CallHistoryDB/CallHistory.storedata";
constexpr std::string_view kTemporaryCallsInMobile = "/Library/CallHistoryDB/CallHistoryTemp.storedata";
constexpr std::string_view kOldCallsInMobile = "/Library/CallHistoryDB/call_history.db";
constexpr std::string_view kOldCallsInWireless = "wireless/Library/CallHistory/call_history.db";

std::optional<StoreProblem> checkFolder(const std::string& path) {
  struct stat status {};
  if (path.empty()) return StoreProblem{say("The source has no name; give the folder of the device after --source.")};
  if (::stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) {
      return StoreProblem{say("There is no folder or file '{0}'; check the path.", path)};
    }
    return StoreProblem{
        say("The folder '{0}' cannot be read ({1}); check its permissions.", path, std::strerror(errno))};
  }
  if (!S_ISDIR(status.st_mode)) {
    return StoreProblem{
        say("'{0}' is a file; give a folder that mirrors a device's file system, with var/mobile/Library/SMS/sms.db "
            "below it.",
            path)};
  }
  return checkReadable(path);
}

/// The places of a store, with the user's folder at `mobile`.
std::vector<std::string> placesOf(SourceStore store, std::string_view mobile) {
  std::string user(mobile);
  switch (store) {
    case SourceStore::kMessages:
      return {user.append(kMessagesInMobile)};
    case SourceStore::kAddressBook:
      return {user.append(kAddressBookInMobile)};
    case SourceStore::kCalls:
      return {user.append(kCallsInMobile)};
    case SourceStore::kTemporaryCalls:
      return {user.append(kTemporaryCallsInMobile)};
    case SourceStore::kOldCalls:
      break;
  }
  // The old list belongs to the user of the radio, whose folder stands beside that of the user.
  const std::string beside = user.substr(0, user.rfind('/') + 1), radio(kOldCallsInWireless);
  std::vector<std::string> places = {beside + radio};
  for (const std::string var : {"private/var/", "var/"}) {
    if (var != beside) places.push_back(var + radio);
  }
  places.push_back(user + std::string(kOldCallsInMobile));
  return places;
}

/// A folder that mirrors "/", and the user's folder below it.
struct Device {
  std::string root, mobile;
  std::string store;  // the real path of what was found
  bool hasMessages = false;
  std::vector<std::string> placesBefore;  // where nothing was
};

std::optional<Device> deviceAt(const std::string& root, std::span<const std::string_view> mobileFolders) {
  const SourceFolder folder(root);
  std::vector<std::string> placesBefore;
  for (const SourceStore store :
       {SourceStore::kMessages, SourceStore::kCalls, SourceStore::kTemporaryCalls, SourceStore::kOldCalls}) {
    for (const std::string_view mobile : mobileFolders) {
      // The radio's list tells where the user is only when it stands beside that user's folder.
      const std::string_view beside = mobile.substr(0, mobile.rfind('/') + 1);
      for (const std::string& place : placesOf(store, mobile)) {
        if (!place.starts_with(beside)) continue;
        if (auto file = folder.resolve(place)) {
          return Device{root, std::string(mobile), std::move(*file), store == SourceStore::kMessages,
                        std::move(placesBefore)};
        }
        placesBefore.push_back(place);
      }
    }
  }
  return std::nullopt;
}

/// The devices in the folders below, those with messages before all others.
std::vector<Device> devicesBelow(const std::string& root, FolderWalkEnd& end) {
  std::vector<Device> found;
  end = walkFolders(root, kWalk, [&](const std::string& folder, int depth) {
    const std::size_t slash = folder.rfind('/');
    const std::string_view name = std::string_view(folder).substr(slash + 1);
    if (depth < 1 || (name != "private" && name != "var" && name != "mobile")) return true;
    auto device = deviceAt(slash == 0 ? "/" : folder.substr(0, slash), kRealMobileFolders);
    if (!device) return true;
    const bool isNew =
        std::none_of(found.begin(), found.end(), [&](const Device& other) { return other.store == device->store; });
    const bool isWhole = device->hasMessages;
    if (isNew) found.push_back(std::move(*device));
    return !isWhole;  // messages may still stand deeper than a call list
  });
  std::stable_sort(found.begin(), found.end(),
                   [](const Device& a, const Device& b) { return a.hasMessages && !b.hasMessages; });
  return found;
}

StoreProblem describeSeveral(const std::string& path, const std::vector<Device>& devices) {
  std::vector<std::string> roots;
  for (const Device& device : devices) {
    if (roots.size() < kMostNamed) roots.push_back("'" + device.root + "'");
  }
  if (devices.size() > roots.size()) roots.push_back(say("and others"));
  return {say("The stores of several devices are below '{0}': {1}; give one of these folders.", path, listed(roots))};
}

StoreProblem describeMissing(const std::string& path, const FolderWalkEnd& walk) {
  const SourceFolder folder(path);
  std::vector<std::string> places;
  for (const std::string_view mobile : kMobileFolders) {
    places.push_back(placesOf(SourceStore::kMessages, mobile).front());
  }
  // A place that may not be read, or a -wal alone, is the better answer.
  if (const auto store = locateStore(folder, places); !store) return store.problem();
  std::string sentence =
      say("There is no Messages store below '{0}': looked for {1} there and some folders deeper, for a Mac's "
          "Library/Messages/chat.db, and for a backup's Manifest.db",
          path, listed(places));
  if (!walk.isComplete) sentence += " " + say("(there are too many folders to look into all)");
  if (!walk.unreadable.empty()) sentence = say("{0}; these may not be read: {1}", sentence, listed(walk.unreadable));
  return {say("{0}; give the folder that mirrors the device's '/', the backup's folder, or the Mac's home.", sentence)};
}

}  // namespace

FolderSource::FolderSource(SourceFolder folder, std::string mobile, std::vector<std::string> placesBefore)
    : DeviceSource({.kind = SourceKind::kDevice, .path = folder.path()}),
      folder_(std::move(folder)),
      mobile_(std::move(mobile)),
      placesBefore_(std::move(placesBefore)) {}

StoreResult<std::unique_ptr<DeviceSource>> FolderSource::find(const std::string& path) {
  if (auto problem = checkFolder(path)) return *problem;
  const std::string root = SourceFolder(path).path();
  auto device = deviceAt(root, kMobileFolders);
  if (!device || !device->hasMessages) {
    FolderWalkEnd walk;
    std::vector<Device> below = devicesBelow(root, walk);
    const bool haveMessages = !below.empty() && below.front().hasMessages;
    if (!device && below.empty()) return describeMissing(path, walk);
    if (!device || haveMessages) {
      if (haveMessages) std::erase_if(below, [](const Device& other) { return !other.hasMessages; });
      if (below.size() > 1) return describeSeveral(path, below);
      device = std::move(below.front());
    }
  }
  return std::unique_ptr<DeviceSource>(
      new FolderSource(SourceFolder(device->root), std::move(device->mobile), std::move(device->placesBefore)));
}

std::unique_ptr<DeviceSource> FolderSource::around(const std::string& store) {
  for (const std::string_view place : {kMessagesInMobile, kCallsInMobile, kTemporaryCallsInMobile, kOldCallsInMobile}) {
    if (!store.ends_with(place)) continue;
    const std::string_view user = std::string_view(store).substr(0, store.size() - place.size());
    for (const std::string_view mobile : kRealMobileFolders) {
      if (!user.ends_with("/" + std::string(mobile))) continue;
      const std::string root(user.substr(0, std::max(user.size() - mobile.size() - 1, std::size_t{1})));
      return std::unique_ptr<DeviceSource>(new FolderSource(SourceFolder(root), std::string(mobile), {}));
    }
  }
  return nullptr;
}

bool FolderSource::isDevice(const std::string& path) { return deviceAt(path, kRealMobileFolders).has_value(); }

std::optional<std::string> FolderSource::find(SourceStore store) const {
  for (const std::string& place : placesOf(store, mobile_)) {
    if (auto file = folder_.resolve(place)) return file;
  }
  return std::nullopt;
}

StoreResult<std::optional<StoreLocation>> FolderSource::store(SourceStore store) {
  return noted(locateStore(folder_, placesOf(store, mobile_)));
}

std::string FolderSource::whyMissing(SourceStore store) const {
  return say("{0} below '{1}': looked for {2}.", nothingThere(store), folder_.path(), listed(placesOf(store, mobile_)));
}

std::vector<SourceFile> FolderSource::originals(SourceStore store) const {
  const auto file = find(store);
  return file ? filesOfStore(folder_.path(), *file) : std::vector<SourceFile>();
}

std::vector<SourceFile> FolderSource::absentees(SourceStore store) const {
  return absentOfStore(folder_, placesOf(store, mobile_));
}

std::vector<SourceFile> FolderSource::lists() const {
  std::vector<SourceFile> files;
  for (const std::string& place : placesBefore_) files.push_back({place, folder_.path() + "/" + place});
  return files;
}

std::optional<std::string> FolderSource::fileOfMessage(std::string_view devicePath) const {
  const auto path = pathInUsersHome(devicePath);
  if (!path) return std::nullopt;
  if (auto file = folder_.resolve(mobile_ + "/" + std::string(*path))) return file;
  return folder_.resolve("User/" + std::string(*path));
}

std::optional<SourceFile> FolderSource::originalOfMessage(std::string_view devicePath) const {
  auto path = fileOfMessage(devicePath);
  if (!path) return std::nullopt;
  return SourceFile{nameBelow(folder_.path(), *path), *path};
}

}  // namespace chatsum::device
