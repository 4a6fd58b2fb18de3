#include "hosts/device/backup/BackupSource.h"

#include <algorithm>
#include <array>
#include <utility>

#include "hosts/device/backup/BackupPlists.h"
#include "hosts/device/backup/BackupUnlocking.h"
#include "hosts/device/backup/CopyProblems.h"
#include "hosts/device/backup/ManifestOpening.h"
#include "hosts/device/language/Say.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kHome = "HomeDomain", kMedia = "MediaDomain", kWireless = "WirelessDomain";

struct Place {
  std::string_view domain;
  std::string_view path;
};

std::vector<Place> placesOf(SourceStore store) {
  switch (store) {
    case SourceStore::kMessages:
      return {{kHome, "Library/SMS/sms.db"}};
    case SourceStore::kAddressBook:
      return {{kHome, "Library/AddressBook/AddressBook.sqlitedb"}};
    case SourceStore::kCalls:
      return {{kHome, "Library/CallHistoryDB/CallHistory.storedata"}};
    case SourceStore::kTemporaryCalls:
      return {{kHome, "Library/CallHistoryDB/CallHistoryTemp.storedata"}};
    case SourceStore::kOldCalls:
      break;
  }
  return {{kWireless, "Library/CallHistory/call_history.db"}, {kHome, "Library/CallHistoryDB/call_history.db"}};
}

std::string nameIn(const Place& place) { return std::string(place.domain).append("-").append(place.path); }

/// The path below the user's folder that a message means; none for anything that is not plainly below it.
std::optional<std::string> pathOfMessage(std::string_view devicePath) {
  constexpr std::array<std::string_view, 5> kStarts = {"User/", "/User/", "~/", "/var/mobile/", "/private/var/mobile/"};
  const auto* const start = std::find_if(kStarts.begin(), kStarts.end(),
                                         [&](std::string_view candidate) { return devicePath.starts_with(candidate); });
  if (start == kStarts.end() || devicePath.find('\0') != std::string_view::npos) return std::nullopt;
  std::string path;
  for (std::string_view rest = devicePath.substr(start->size()); !rest.empty();) {
    const std::string_view component = rest.substr(0, rest.find('/'));
    rest.remove_prefix(std::min(component.size() + 1, rest.size()));
    if (component == "..") return std::nullopt;
    if (component.empty() || component == ".") continue;
    path.append(path.empty() ? "" : "/").append(component);
  }
  if (path.empty()) return std::nullopt;
  return path;
}

StoreProblem listIsDamaged(const std::string& shownPath) {
  return {
      say("The backup's list of files is damaged, so '{0}' cannot be looked for; copy the backup again.", shownPath)};
}

StoreProblem cutOff(const std::string& shownPath) {
  return {say("'{0}' is cut off: the backup holds less of it than it lists; copy the backup again, or make a new one.",
              shownPath)};
}

// Nothing in the file itself tells whether the list or the file is right.
std::string belowSize(const std::string& shownPath) {
  return say("'{0}' is smaller than the backup lists; if its last messages are missing, make a new backup.", shownPath);
}

StoreProblem missingInFolder(const std::string& shownPath) {
  return {say("'{0}' is listed in the backup, but its file is missing; copy the backup again, all of it.", shownPath)};
}

}  // namespace

struct BackupSource::Parts {
  BackupFolder folder;
  std::optional<KeyRing> keys;
  std::unique_ptr<PrivateCopies> copies;
  std::unique_ptr<BackupManifest> manifest;
};

bool BackupSource::isBackup(const std::string& folder) {
  const BackupFolder backup(folder);
  for (const char* const name : {"Manifest.db", "Manifest.mbdb", "Manifest.plist"}) {
    if (backup.ownFile(name)) return true;
  }
  // One that lost its lists still has the device's files under their names.
  return backup.storedFile(fileIdOf(kHome, "Library/SMS/sms.db")).has_value();
}

SourceFacts BackupSource::factsOf(const std::string& folder) { return BackupPlists::read(BackupFolder(folder)).facts; }

StoreResult<std::unique_ptr<DeviceSource>> BackupSource::open(const std::string& folder, const SourceAccess& access) {
  Parts parts{.folder = BackupFolder(folder, access.digests), .keys = {}, .copies = {}, .manifest = {}};
  BackupPlists lists = BackupPlists::read(parts.folder);
  if (lists.facts.isEncrypted) {
    auto keys = unlockBackup(lists, access);
    if (!keys) return keys.problem();
    parts.keys = std::move(keys.value());
    auto copies = SnapshotFolder::create();
    if (!copies) return copies.problem();
    parts.copies = std::make_unique<PrivateCopies>(std::move(copies.value()));
  }
  auto manifest =
      openManifest(parts.folder, lists, {.keys = parts.keys ? &*parts.keys : nullptr, .copies = parts.copies.get()});
  if (!manifest) return manifest.problem();
  parts.manifest = std::move(manifest.value());
  return std::unique_ptr<DeviceSource>(new BackupSource(std::move(lists.facts), std::move(parts)));
}

BackupSource::BackupSource(SourceFacts facts, Parts parts)
    : DeviceSource(std::move(facts)),
      folder_(std::move(parts.folder)),
      keys_(std::move(parts.keys)),
      copies_(std::move(parts.copies)),
      manifest_(std::move(parts.manifest)) {}

StoreResult<std::optional<StoreLocation>> BackupSource::store(SourceStore store) {
  auto known = stores_.find(store);
  if (known == stores_.end()) {
    known = stores_.emplace(store, bringOutStore(store)).first;
    for (const std::string& warning : known->second.warnings) warn(warning);
  }
  return known->second.location;
}

std::vector<SourceFile> BackupSource::originals(SourceStore store) const {
  const auto known = stores_.find(store);
  return known == stores_.end() ? std::vector<SourceFile>() : known->second.originals;
}

std::vector<SourceFile> BackupSource::absentees(SourceStore store) const {
  const auto known = stores_.find(store);
  return known == stores_.end() ? std::vector<SourceFile>() : known->second.absentees;
}

std::vector<SourceFile> BackupSource::lists() const {
  std::vector<SourceFile> files;
  for (const std::string name : {"Info.plist", "Manifest.plist", "Status.plist", "Manifest.db", "Manifest.db-wal",
                                 "Manifest.db-shm", "Manifest.db-journal", "Manifest.mbdb"}) {
    files.push_back({name, folder_.path() + "/" + name});
  }
  return files;
}

std::string BackupSource::shownPathOf(const std::string& name) const { return folder_.path() + ": " + name; }

ManifestAnswer BackupSource::listed(std::string_view domain, std::string_view path) const {
  ManifestAnswer answer = manifest_->find(domain, path);
  // Whatever a damaged list has lost: a file that is not stored is not there.
  if (!answer.isReadable) answer.isReadable = !folder_.storedFile(fileIdOf(domain, path));
  return answer;
}

BackupSource::Opened BackupSource::bringOutStore(SourceStore store) const {
  Opened opened{.location = std::optional<StoreLocation>(), .originals = {}};
  for (const Place& place : placesOf(store)) {
    const std::string shownPath = shownPathOf(nameIn(place));
    const ManifestAnswer answer = listed(place.domain, place.path);
    noteAbsence(nameIn(place), answer.file ? answer.file->id : fileIdOf(place.domain, place.path), opened);
    if (!answer.isReadable) {
      opened.location = listIsDamaged(shownPath);
      return opened;
    }
    if (!answer.file || answer.file->kind != BackupFile::Kind::kFile) continue;
    const auto stored = folder_.storedFile(answer.file->id);
    if (!stored) {
      opened.location = missingInFolder(shownPath);
      return opened;
    }
    opened.originals.push_back({answer.file->name, *stored});
    auto main = bringOut(*answer.file, opened.originals.back(), StoredContent::kDatabase, opened.warnings);
    if (!main) {
      opened.location = main.problem();
      return opened;
    }
    StoreLocation location{.main = main.value(), .wal = "", .shm = "", .journal = "", .shownPath = shownPath};
    if (!keys_) location.digests = folder_.digests();
    if (auto problem = bringOutBeside(std::string(place.domain), std::string(place.path), opened, location)) {
      opened.location = std::move(*problem);
    } else {
      opened.location = std::optional<StoreLocation>(std::move(location));
    }
    return opened;
  }
  return opened;
}

// The places where a file of this id would be taken from and none stands.
void BackupSource::noteAbsence(const std::string& name, const std::string& id, Opened& opened) const {
  for (std::string& path : folder_.placesWithout(id)) {
    if (folder_.digests()) folder_.digests()->note(path, std::nullopt);
    opened.absentees.push_back({name, std::move(path)});
  }
}

// What SQLite put beside the store has an id of its own. A -wal or -journal that is there but cannot be brought out
// would be rows lost without a word; a -shm holds nothing that SQLite could not make again.
std::optional<StoreProblem> BackupSource::bringOutBeside(const std::string& domain, const std::string& path,
                                                         Opened& opened, StoreLocation& location) const {
  struct Beside {
    const char* suffix;
    StoredContent content;
    std::string* place;
    bool isNeeded;
  };
  for (const Beside& beside : {Beside{"-wal", StoredContent::kWal, &location.wal, true},
                               Beside{"-journal", StoredContent::kJournal, &location.journal, true},
                               Beside{"-shm", StoredContent::kAnything, &location.shm, false}}) {
    const ManifestAnswer answer = listed(domain, path + beside.suffix);
    noteAbsence(domain + "-" + path + beside.suffix,
                answer.file ? answer.file->id : fileIdOf(domain, path + beside.suffix), opened);
    if (!answer.isReadable && beside.isNeeded) return listIsDamaged(shownPathOf(domain + "-" + path + beside.suffix));
    if (!answer.file || answer.file->kind != BackupFile::Kind::kFile) continue;
    const auto stored = folder_.storedFile(answer.file->id);
    if (!stored && beside.isNeeded) return missingInFolder(shownPathOf(answer.file->name));
    if (!stored) continue;
    opened.originals.push_back({answer.file->name, *stored});
    auto brought = bringOut(*answer.file, opened.originals.back(), beside.content, opened.warnings);
    if (!brought && beside.isNeeded) return brought.problem();
    if (brought) *beside.place = std::move(brought.value());
  }
  return std::nullopt;
}

StoreResult<std::string> BackupSource::bringOut(const BackupFile& file, const SourceFile& original,
                                                StoredContent content, std::vector<std::string>& warnings) const {
  const std::string shownPath = shownPathOf(file.name);
  if (!keys_) {
    // A main file tells its own length; of what stands beside it, SQLite would leave out the rest without a word.
    const auto state = fileState(original.path);
    const bool isBelowSize = state && file.size && static_cast<std::uint64_t>(state->size) < *file.size;
    if (!isBelowSize || content == StoredContent::kDatabase) return original.path;
    if (content != StoredContent::kWal || !isWholeWal(original.path)) return cutOff(shownPath);
    warnings.push_back(belowSize(shownPath));
    return original.path;
  }
  const auto key = keys_->unwrap(file.protectionClass, file.wrappedKey);
  if (!key) {
    return StoreProblem{
        say("'{0}' cannot be decrypted, because its key is missing or damaged; copy the backup again, or "
            "make a new one.",
            shownPath)};
  }
  const std::string copy = copies_->pathFor("store-" + file.id);
  std::optional<FileDigest> stored;
  const DecryptedFile decrypted =
      decryptFile(original.path, copy, *key, file.size, content, folder_.digests() ? &stored : nullptr);
  if (folder_.digests() && stored) folder_.digests()->note(original.path, stored);
  if (decrypted.error != 0) return copyProblem(shownPath, copies_->folder(), decrypted.error);
  if (decrypted.isShort) return cutOff(shownPath);
  if (decrypted.startsOtherwise) {
    return StoreProblem{
        say("'{0}' is damaged: decrypted, it is no database; copy the backup again, or make a new one.", shownPath)};
  }
  if (decrypted.isBroken) {
    warnings.push_back(
        say("'{0}' is damaged at its end: it does not end with a whole block; what stands before was "
            "read. Copy the backup again.",
            shownPath));
  } else if (decrypted.isBelowSize && content == StoredContent::kWal) {
    warnings.push_back(belowSize(shownPath));
  }
  return copy;
}

std::string BackupSource::whyMissing(SourceStore store) const {
  const bool isCallList = store != SourceStore::kMessages && store != SourceStore::kAddressBook;
  const std::string path = "'" + folder_.path() + "'";
  if (isCallList && !facts().isEncrypted) {
    return say(
        "The backup {0} is not encrypted, and an unencrypted backup holds no call list; make an encrypted one in "
        "Finder or iTunes and give its password.",
        path);
  }
  std::string places;
  for (const SourceStore part : {SourceStore::kCalls, SourceStore::kOldCalls}) {
    for (const Place& place : placesOf(isCallList ? part : store)) {
      places.append(places.empty() ? "" : ", ").append(nameIn(place));
    }
    if (!isCallList) break;
  }
  return say("{0} in the backup {1}: looked for {2}.", nothingThere(store), path, places);
}

std::optional<BackupFile> BackupSource::listedFileOfMessage(std::string_view devicePath) const {
  const auto path = pathOfMessage(devicePath);
  if (!path) return std::nullopt;
  for (const std::string_view domain : {kMedia, kHome}) {
    auto answer = listed(domain, *path);
    if (!answer.file) continue;
    if (answer.file->kind != BackupFile::Kind::kFile) return std::nullopt;
    return std::move(answer.file);
  }
  return std::nullopt;
}

std::optional<std::string> BackupSource::fileOfMessage(std::string_view devicePath) const {
  const auto file = listedFileOfMessage(devicePath);
  auto stored = file ? folder_.storedFile(file->id) : std::nullopt;
  if (!stored || !keys_) return stored;
  const auto make = [&](const std::string& copy) -> std::optional<std::uint64_t> {
    const auto key = keys_->unwrap(file->protectionClass, file->wrappedKey);
    if (!key) return std::nullopt;
    const DecryptedFile decrypted = decryptFile(*stored, copy, *key, file->size);
    if (decrypted.error != 0) return std::nullopt;
    if (decrypted.isCutToSize || decrypted.isBelowSize || decrypted.isBroken) {
      const std::lock_guard lock(doubtsMutex_);
      doubts_.insert(copy);
    }
    return decrypted.length;
  };
  return copies_->copyOf(file->name, make);
}

bool BackupSource::isDoubtful(const std::string& file) const {
  const std::lock_guard lock(doubtsMutex_);
  return doubts_.contains(file);
}

std::optional<SourceFile> BackupSource::originalOfMessage(std::string_view devicePath) const {
  const auto file = listedFileOfMessage(devicePath);
  auto stored = file ? folder_.storedFile(file->id) : std::nullopt;
  if (!stored) return std::nullopt;
  return SourceFile{file->name, std::move(*stored)};
}

}  // namespace chatsum::device
