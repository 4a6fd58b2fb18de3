#include "hosts/device/sample/StoreFile.h"

#include <array>
#include <system_error>
#include <utility>

namespace chatsum::device {

namespace fs = std::filesystem;

namespace {

constexpr std::array<std::string_view, 3> kSuffixes = {"", "-wal", "-shm"};

}  // namespace

StoreFile::StoreFile(fs::path path, Placement placement, const std::string& tables)
    : path_(std::move(path)), placement_(placement) {
  std::error_code error;
  fs::create_directories(path_.parent_path(), error);
  if (error) {
    noteFailure("its folder cannot be made: " + error.message());
    return;
  }
  discard();
  sqlite3* handle = nullptr;
  const int result = sqlite3_open(partial("").c_str(), &handle);
  connection_ = sqlite::Connection(handle);
  if (result != SQLITE_OK) {
    noteFailure();
    return;
  }
  // Nobody needs the half-written file after a crash, so nothing waits for the disk. The unique index of the message
  // guids is filled in random order: a cache that holds it keeps the time per row the same up to millions of rows.
  execute("PRAGMA page_size = 4096; PRAGMA synchronous = OFF; PRAGMA cache_size = -524288; PRAGMA temp_store = MEMORY");
  if (placement_ == Placement::wal) {
    execute("PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0");
    sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  } else {
    execute("PRAGMA journal_mode = OFF");
  }
  execute("BEGIN");
  execute(tables);
}

StoreFile::~StoreFile() {
  connection_ = sqlite::Connection();
  discard();
}

void StoreFile::execute(const std::string& sql) {
  if (!failed() && !connection_.execute(sql)) noteFailure();
}

void StoreFile::noteFailure() { noteFailure(connection_.lastError()); }

void StoreFile::noteFailure(const std::string& reason) {
  if (!failed()) failure_ = "The store " + path_.string() + " could not be written: " + reason + ".";
}

std::optional<std::string> StoreFile::finish(const std::string& indexes) {
  execute(indexes);
  execute("COMMIT");
  connection_ = sqlite::Connection();
  for (std::string_view suffix : kSuffixes) {
    if (failed()) break;
    std::error_code error;
    fs::path place = path_;
    place += suffix;
    fs::remove(place, error);
    if (!suffix.empty() && !fs::exists(partial(suffix))) continue;
    fs::rename(partial(suffix), place, error);
    if (error) noteFailure(error.message());
  }
  discard();
  return failure_;
}

void StoreFile::discard() {
  for (std::string_view suffix : kSuffixes) {
    std::error_code ignored;
    fs::remove(partial(suffix), ignored);
  }
}

// SQLite derives the names of the -wal and -shm from the file's own, so all three carry the mark in front of the
// suffix.
fs::path StoreFile::partial(std::string_view suffix) const {
  fs::path path = path_;
  path += ".partial";
  path += suffix;
  return path;
}

}  // namespace chatsum::device
