#include "hosts/device/mac/MacSource.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "hosts/device/language/Say.h"
#include "hosts/device/mac/MacAddressBook.h"
#include "hosts/device/source/MessagePaths.h"
#include "hosts/device/source/SourceFiles.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

constexpr const char* kMessagesFolder = "Library/Messages";
constexpr const char* kMessages = "Library/Messages/chat.db";
constexpr const char* kCalls = "Library/Application Support/CallHistoryDB/CallHistory.storedata";
constexpr const char* kTemporaryCalls = "Library/Application Support/CallHistoryDB/CallHistoryTemp.storedata";
constexpr const char* kBooksFolder = "Library/Application Support/AddressBook";
constexpr const char* kBookName = "/AddressBook-v22.abcddb";
constexpr const char* kAccounts = "/Sources";
constexpr std::size_t kMostAccounts = 500;

/// Empty for a store that a Mac does not have.
std::string placeOf(SourceStore store) {
  switch (store) {
    case SourceStore::kMessages:
      return kMessages;
    case SourceStore::kAddressBook:
      return std::string(kBooksFolder) + kBookName;
    case SourceStore::kCalls:
      return kCalls;
    case SourceStore::kTemporaryCalls:
      return kTemporaryCalls;
    case SourceStore::kOldCalls:
      break;
  }
  return "";
}

bool isFolder(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Whether the system does not even say what stands there.
bool isHidden(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) != 0 && (errno == EACCES || errno == EPERM);
}

}  // namespace

bool MacSource::isMacHome(const std::string& folder) {
  const SourceFolder home(folder);
  for (const char* const place : {kMessages, kCalls}) {
    if (home.resolve(place)) return true;
  }
  if (home.resolve(std::string(kMessages) + "-wal")) return true;
  const auto messages = home.resolve(kMessagesFolder);
  return messages && isFolder(*messages) && isHidden(*messages + "/chat.db");
}

StoreResult<std::unique_ptr<DeviceSource>> MacSource::open(const std::string& folder) {
  if (!isMacHome(folder)) {
    return StoreProblem{say("There is no Messages store of a Mac below '{0}': looked for {1}.", folder, kMessages)};
  }
  return std::unique_ptr<DeviceSource>(new MacSource(SourceFolder(folder)));
}

std::unique_ptr<DeviceSource> MacSource::around(const std::string& store) {
  for (const char* const place : {kMessages, kCalls, kTemporaryCalls}) {
    const std::string end = std::string("/") + place;
    if (!store.ends_with(end)) continue;
    const std::string home = store.substr(0, store.size() - end.size());
    return std::unique_ptr<DeviceSource>(new MacSource(SourceFolder(home.empty() ? "/" : home)));
  }
  return nullptr;
}

MacSource::MacSource(SourceFolder home)
    : DeviceSource({.kind = SourceKind::kMac, .path = home.path()}), home_(std::move(home)) {}

std::vector<std::string> MacSource::books() const {
  std::vector<std::string> places = {placeOf(SourceStore::kAddressBook)};
  const std::string accounts = std::string(kBooksFolder) + kAccounts;
  if (const auto folder = home_.resolve(accounts)) {
    std::error_code error;
    std::vector<std::string> names;
    for (fs::directory_iterator entry(*folder, error);
         !error && entry != fs::directory_iterator() && names.size() < kMostAccounts; entry.increment(error)) {
      names.push_back(entry->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) places.push_back(accounts + "/" + name + kBookName);
  }
  std::vector<std::string> books;
  for (const std::string& place : places) {
    const auto book = home_.resolve(place);
    if (book && std::find(books.begin(), books.end(), *book) == books.end()) books.push_back(*book);
  }
  return books;
}

StoreResult<std::optional<StoreLocation>> MacSource::store(SourceStore store) {
  if (store == SourceStore::kOldCalls) return std::optional<StoreLocation>();
  if (store != SourceStore::kAddressBook) return noted(locateStore(home_, {placeOf(store)}));
  if (!book_) {
    const auto files = books();
    // Without any book, the first place says whether it is only kept from us.
    if (files.empty()) return locateStore(home_, {placeOf(store)});
    auto book = convertMacBooks(files, digests());
    if (!book) return book.problem();
    book_.emplace(std::move(book.value()));
    for (std::string& warning : book_->warnings) warn(std::move(warning));
    const auto accounts = home_.resolve(std::string(kBooksFolder) + kAccounts);
    if (auto problem = accounts ? checkReadable(*accounts) : std::nullopt) warn(std::move(problem->sentence));
  }
  return std::optional<StoreLocation>(book_->location);
}

std::string MacSource::whyMissing(SourceStore store) const {
  if (store == SourceStore::kOldCalls) {
    return say("There is no such call list in the Mac's home '{0}': Macs keep none.", home_.path());
  }
  return say("{0} in the Mac's home '{1}': looked for {2}.", nothingThere(store), home_.path(), placeOf(store));
}

std::vector<SourceFile> MacSource::originals(SourceStore store) const {
  std::vector<SourceFile> files;
  std::vector<std::string> stores;
  if (store == SourceStore::kAddressBook) {
    stores = books();
  } else if (const auto file = store == SourceStore::kOldCalls ? std::nullopt : home_.resolve(placeOf(store))) {
    stores = {*file};
  }
  for (const std::string& path : stores) {
    for (SourceFile& file : filesOfStore(home_.path(), path)) files.push_back(std::move(file));
  }
  return files;
}

std::vector<SourceFile> MacSource::absentees(SourceStore store) const {
  if (store == SourceStore::kOldCalls) return {};
  std::vector<SourceFile> files = absentOfStore(home_, {placeOf(store)});
  if (store != SourceStore::kAddressBook) return files;
  const auto own = home_.resolve(placeOf(store));
  for (const std::string& book : books()) {
    if (own && book == *own) continue;
    for (SourceFile& file : absentOfStore(home_, {nameBelow(home_.path(), book)})) files.push_back(std::move(file));
  }
  return files;
}

// Messages may name any file; only what Messages keeps in its own folder is theirs to show.
std::optional<std::string> MacSource::fileOfMessage(std::string_view devicePath) const {
  const auto path = pathBesideStore(devicePath);
  const auto folder = path ? home_.resolve(kMessagesFolder) : std::nullopt;
  return folder ? SourceFolder(*folder).resolve(*path) : std::nullopt;
}

std::optional<SourceFile> MacSource::originalOfMessage(std::string_view devicePath) const {
  auto path = fileOfMessage(devicePath);
  if (!path) return std::nullopt;
  return SourceFile{nameBelow(home_.path(), *path), *path};
}

}  // namespace chatsum::device
