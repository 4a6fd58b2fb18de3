#include "hosts/device/session/SourceGuard.h"

#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "hosts/device/home/HomePaths.h"
#include "hosts/device/language/Say.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

/// The path without links. What is not there yet is taken as it is, but for links that lead to nothing, which are
/// followed.
fs::path withoutLinks(const fs::path& path, int linksLeft = 40) {
  std::error_code error;
  fs::path there = fs::absolute(path, error), missing;
  while (!fs::exists(there, error)) {
    if (fs::is_symlink(there, error) && linksLeft > 0) {
      const fs::path target = fs::read_symlink(there, error);
      return withoutLinks(there.parent_path() / target / missing, linksLeft - 1);
    }
    if (there == there.parent_path()) return path;
    missing = missing.empty() ? there.filename() : there.filename() / missing;
    there = there.parent_path();
  }
  const fs::path real = fs::canonical(there, error);
  return (error ? there : real) / missing;
}

std::vector<fs::path> guardedPlaces(const SourceFacts& source) {
  const fs::path path = source.path;
  std::vector<fs::path> places;
  switch (source.kind) {
    case SourceKind::kDevice:
    case SourceKind::kBackup:
      return {path};
    case SourceKind::kMac:
      for (const char* const folder :
           {"Messages", "Application Support/CallHistoryDB", "Application Support/AddressBook"})
        places.push_back(path / "Library" / folder);
      return places;
    case SourceKind::kFile:
      break;
  }
  // What may be read beside it, with what SQLite puts beside each store.
  const fs::path folder = path.parent_path();
  std::vector<fs::path> stores = {path};
  for (const char* const name : {"sms.db", "chat.db", "AddressBook.sqlitedb", "AddressBook-v22.abcddb",
                                 "CallHistory.storedata", "CallHistoryTemp.storedata", "call_history.db"}) {
    stores.push_back(folder / name);
  }
  for (const fs::path& store : stores) {
    for (const char* const end : {"", "-wal", "-shm", "-journal"}) places.emplace_back(store.string() + end);
  }
  for (const char* const name : {"Attachments", "StickerCache", "Parts"}) places.push_back(folder / name);
  return places;
}

bool isSame(const fs::path& one, const fs::path& other) {
  std::error_code error;
  return one == other || fs::equivalent(one, other, error);
}

}  // namespace

std::optional<StoreProblem> refuseInSource(const SourceFacts& source, const std::string& place) {
  const fs::path target = withoutLinks(place);
  for (const fs::path& guarded : guardedPlaces(source)) {
    const fs::path real = withoutLinks(guarded);
    for (fs::path inside = target; !inside.empty(); inside = inside.parent_path()) {
      if (isSame(inside, real)) {
        return StoreProblem{
            say("'{0}' is inside the source '{1}', where nothing is ever written; give a place outside of it.", place,
                source.path)};
      }
      if (inside == inside.parent_path()) break;
    }
  }
  return std::nullopt;
}

std::optional<StoreProblem> refuseHomeInSource(const SourceFacts& source, const std::string& home) {
  for (const std::string& place : {reportsFolderIn(home), settingsFileIn(home)}) {
    if (refuseInSource(source, place)) return refuseInSource(source, place);
  }
  return std::nullopt;
}

}  // namespace chatsum::device
