#include "hosts/device/source/FileSource.h"

#include <array>
#include <utility>

#include "hosts/device/language/Say.h"
#include "hosts/device/source/MessagePaths.h"
#include "hosts/device/source/SourceFiles.h"
#include "hosts/device/stores/StoreColumns.h"
#include "hosts/device/stores/StoreSnapshot.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {
namespace {

constexpr const char* kMacBookName = "AddressBook-v22.abcddb";

struct KnownName {
  std::string_view name;
  SourceStore store;
};

// In the order in which they are looked for.
constexpr std::array<KnownName, 7> kKnownNames = {{{"sms.db", SourceStore::kMessages},
                                                   {"chat.db", SourceStore::kMessages},
                                                   {"AddressBook.sqlitedb", SourceStore::kAddressBook},
                                                   {kMacBookName, SourceStore::kAddressBook},
                                                   {"CallHistory.storedata", SourceStore::kCalls},
                                                   {"CallHistoryTemp.storedata", SourceStore::kTemporaryCalls},
                                                   {"call_history.db", SourceStore::kOldCalls}}};

// What a message names lies in one of these; nothing else in the folder is the store's, which may be anybody's folder.
constexpr std::array<std::string_view, 3> kFolders = {"Attachments/", "StickerCache/", "Parts/"};

SourceStore kindByTables(const std::string& path) {
  const auto snapshot = StoreSnapshot::take(path);
  if (!snapshot) return SourceStore::kMessages;
  sqlite3* handle = nullptr;
  const int code = snapshot.value().open(&handle);
  const sqlite::Connection connection(handle);
  if (code != SQLITE_OK) return SourceStore::kMessages;
  const StoreColumns columns(handle);
  if (columns.has("message")) return SourceStore::kMessages;
  if (columns.has("ZCALLRECORD")) return SourceStore::kCalls;
  return columns.has("call") ? SourceStore::kOldCalls : SourceStore::kMessages;
}

/// None for books, which are no source of their own.
std::optional<SourceStore> kindByName(std::string_view name) {
  for (const KnownName& known : kKnownNames) {
    if (known.name == name && known.store != SourceStore::kAddressBook) return known.store;
  }
  return std::nullopt;
}

}  // namespace

FileSource::FileSource(const std::string& path, SourceStore kind, BookConverter convertMacBooks)
    : DeviceSource({.kind = SourceKind::kFile, .path = path}),
      folder_(path.substr(0, path.rfind('/') + 1)),
      name_(path.substr(path.rfind('/') + 1)),
      kind_(kind),
      convertMacBooks_(std::move(convertMacBooks)) {}

StoreResult<std::unique_ptr<DeviceSource>> FileSource::open(const std::string& path, BookConverter convertMacBooks) {
  if (auto problem = checkReadable(path)) return *problem;
  const auto named = kindByName(path.substr(path.rfind('/') + 1));
  const SourceStore kind = named ? *named : kindByTables(path);
  return std::unique_ptr<DeviceSource>(new FileSource(path, kind, std::move(convertMacBooks)));
}

std::vector<std::string> FileSource::namesOf(SourceStore store) const {
  if (store == kind_) return {name_};
  std::vector<std::string> names;
  for (const KnownName& known : kKnownNames) {
    if (known.store == store) names.emplace_back(known.name);
  }
  return names;
}

std::optional<std::string> FileSource::find(SourceStore store) const {
  for (const std::string& name : namesOf(store)) {
    if (auto file = folder_.resolve(name)) return file;
  }
  return std::nullopt;
}

StoreResult<std::optional<StoreLocation>> FileSource::store(SourceStore store) {
  if (store != SourceStore::kAddressBook) return noted(locateStore(folder_, namesOf(store)));
  const auto file = find(store);
  if (!file || !file->ends_with(kMacBookName)) return noted(locateStore(folder_, namesOf(store)));
  if (!book_) {
    auto book = convertMacBooks_({*file}, digests());
    if (!book) return book.problem();
    book_.emplace(std::move(book.value()));
    for (std::string& warning : book_->warnings) warn(std::move(warning));
  }
  return std::optional<StoreLocation>(book_->location);
}

std::string FileSource::whyMissing(SourceStore store) const {
  return say("{0} beside '{1}': looked for {2}; copy it into that folder, or give the folder of the device or backup.",
             nothingThere(store), facts().path, listed(namesOf(store)));
}

std::vector<SourceFile> FileSource::originals(SourceStore store) const {
  const auto file = find(store);
  return file ? filesOfStore(folder_.path(), *file) : std::vector<SourceFile>();
}

std::vector<SourceFile> FileSource::absentees(SourceStore store) const {
  return absentOfStore(folder_, namesOf(store));
}

std::optional<std::string> FileSource::fileOfMessage(std::string_view devicePath) const {
  const auto path = pathBesideStore(devicePath);
  if (!path) return std::nullopt;
  for (const std::string_view name : kFolders) {
    if (!path->starts_with(name)) continue;
    const auto folder = folder_.resolve(name);
    return folder ? SourceFolder(*folder).resolve(path->substr(name.size())) : std::nullopt;
  }
  return std::nullopt;
}

std::optional<SourceFile> FileSource::originalOfMessage(std::string_view devicePath) const {
  auto path = fileOfMessage(devicePath);
  if (!path) return std::nullopt;
  return SourceFile{nameBelow(folder_.path(), *path), *path};
}

}  // namespace chatsum::device
