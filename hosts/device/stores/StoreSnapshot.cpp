#include "hosts/device/stores/StoreSnapshot.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "hosts/device/language/Say.h"
#include "hosts/device/stores/FileCopy.h"
#include "hosts/device/stores/PrivateVfs.h"
#include "hosts/device/stores/SuperJournal.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

constexpr int kMostTries = 3;
constexpr std::size_t kLongestSqlitePath = 500;  // SQLite itself refuses more than 512 bytes
constexpr auto kPause = std::chrono::milliseconds(100);

// What SQLite's refusal to read a database means to its owner.
StoreProblem describeUnreadable(const std::string& shownPath, int code, const std::string& reason) {
  switch (code & 0xFF) {
    case SQLITE_NOTADB:
      return {looksEncrypted(shownPath)};
    case SQLITE_CANTOPEN:
      return {say("'{0}' cannot be opened any more; check that it is still there and may be read.", shownPath)};
    case SQLITE_IOERR:
      return {say("'{0}' cannot be read ({1}); check the disk or copy the file elsewhere.", shownPath, reason)};
    case SQLITE_FULL:
      return {say("The disk is full while '{0}' is prepared for reading; free some room.", shownPath)};
    default:
      return {say("'{0}' is damaged: its list of tables cannot be read ({1}); copy it again from the device or backup.",
                  shownPath, reason)};
  }
}

StoreProblem describeCopyFailure(const std::string& shownPath, const std::string& parent, int error) {
  if (error == ENOSPC || error == EDQUOT) {
    return {
        say("There is not enough room in '{0}' for a private copy of '{1}'; free some or set TMPDIR to a folder with "
            "more.",
            parent, shownPath)};
  }
  return {say("'{0}' cannot be copied into a private folder ({1}); check that it and the files beside it may be read.",
              shownPath, std::strerror(error))};
}

// Reading every row of the schema makes SQLite parse it, too.
int readSchema(sqlite3* connection) {
  const sqlite::Statement statement(connection, "SELECT type, name, sql FROM sqlite_master");
  if (!statement) return sqlite3_errcode(connection);
  int code = SQLITE_ROW;
  while (code == SQLITE_ROW) code = statement.step();
  return code == SQLITE_DONE ? SQLITE_OK : code;
}

// Merges a copy's -wal and rolls its -journal back, so that one file remains. Leaves SQLite's words in `said`.
int settle(const std::string& path, std::string& said) {
  const PrivateVfs vfs(path);
  sqlite3* handle = nullptr;
  int code = sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, vfs.name());
  const sqlite::Connection connection(handle);
  if (code == SQLITE_OK) {
    // Nobody else knows the copy, and a crash costs nothing: no shared memory, no syncing, no other files.
    const char* const sql =
        "PRAGMA temp_store=MEMORY; PRAGMA locking_mode=EXCLUSIVE; PRAGMA synchronous=OFF; PRAGMA journal_mode=DELETE";
    code = sqlite3_exec(handle, sql, nullptr, nullptr, nullptr);
  }
  if (code == SQLITE_OK) code = readSchema(handle);
  if (code != SQLITE_OK) said = sqlite3_errmsg(handle);
  return code;
}

/// What was copied of one file of the source; no digest when there was none.
struct FileReading {
  std::string path;
  std::optional<FileDigest> digest;
};

// Answers an errno.
int readCopies(const StoreFiles& files, const std::string& copy, std::vector<FileReading>& readings) {
  const std::pair<const std::string&, const char*> parts[] = {
      {files.main, ""}, {files.wal, "-wal"}, {files.journal, "-journal"}};
  for (const auto& [path, suffix] : parts) {
    if (path.empty()) continue;
    readings.push_back({path, std::nullopt});
    if (!fileState(copy + suffix)) continue;
    auto digest = digestOfFile(copy + suffix);
    if (!digest) return EIO;
    readings.back().digest = std::move(digest.value());
  }
  return 0;
}

}  // namespace

std::string immutableUri(const std::string& path) {
  constexpr std::string_view kPlain = "/-._~";
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string uri = "file://";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    const bool alphanumeric = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    if (alphanumeric || kPlain.find(c) != std::string_view::npos) {
      uri += c;
    } else {
      uri += {'%', kHex[byte >> 4U], kHex[byte & 0x0FU]};
    }
  }
  return uri + "?mode=ro&immutable=1";
}

StoreSnapshot::StoreSnapshot(const StoreLocation& location, StoreFiles files)
    : shownPath_(location.shownPath), files_(std::move(files)), digests_(location.digests), databasePath_(files_.main) {
  taken_ = sourceState();
}

StoreSnapshot::SourceState StoreSnapshot::sourceState() const {
  return {fileState(files_.main), fileState(files_.wal), fileState(files_.journal)};
}

bool StoreSnapshot::sourceIsUnchanged() const { return sourceState() == taken_; }

StoreResult<StoreSnapshot> StoreSnapshot::take(const StoreLocation& location, const Options& options) {
  auto files = findStoreFiles(location);
  if (!files) return files.problem();
  StoreSnapshot snapshot(location, std::move(files.value()));
  const bool needsNoCopy = snapshot.files_.standsAlone() && !snapshot.digests_;
  if (needsNoCopy && snapshot.files_.main.size() <= kLongestSqlitePath) {
    if (auto problem = checkStoreLength(snapshot.files_.main, snapshot.files_.wal, location.shownPath)) return *problem;
  } else if (auto problem = snapshot.takeCopy(options)) {
    return *problem;
  }
  if (auto problem = snapshot.readTableList()) return *problem;
  return snapshot;
}

std::optional<StoreProblem> StoreSnapshot::takeCopy(const Options& options) {
  StoreProblem problem;
  for (int attempt = 1; attempt <= kMostTries; ++attempt) {
    if (attempt > 1) std::this_thread::sleep_for(kPause);
    switch (copyOnce(options, attempt, attempt == kMostTries, problem)) {
      case CopyEnd::kDone:
        return std::nullopt;
      case CopyEnd::kFailed:
        folder_.reset();
        return problem;
      case CopyEnd::kChanged:
        break;
    }
  }
  folder_.reset();
  return problem;
}

StoreSnapshot::CopyEnd StoreSnapshot::copyOnce(const Options& options, int attempt, bool isLast,
                                               StoreProblem& problem) {
  folder_.reset();
  auto folder = SnapshotFolder::create(options.temporaryParent);
  if (!folder) {
    problem = folder.problem();
    return CopyEnd::kFailed;
  }
  folder_.emplace(std::move(folder.value()));
  databasePath_ = folder_->path() + "/store";
  taken_ = sourceState();

  // The main file goes first: what is moved from the -wal into it meanwhile shows as a change of the main file.
  int error = copyFile(files_.main, databasePath_);
  if (error == 0 && options.afterMainCopied) options.afterMainCopied(attempt);
  const auto copyBeside = [&](const std::string& from, const char* suffix) {
    if (error != 0 || from.empty()) return;
    error = copyFile(from, databasePath_ + suffix);
    if (error == ENOENT) error = 0;  // each may be missing; one that vanished just now shows as a change
  };
  copyBeside(files_.wal, "-wal");
  copyBeside(files_.journal, "-journal");  // a -shm holds nothing that the others do not
  std::vector<FileReading> readings;
  if (error == 0 && digests_) error = readCopies(files_, databasePath_, readings);
  if (error == 0) error = dropSuperJournal(databasePath_ + "-journal");
  if (error != 0) {
    problem = describeCopyFailure(shownPath_, options.temporaryParent, error);
    return CopyEnd::kFailed;
  }

  const SourceState now = sourceState();
  // Rows that were only added to the -wal do no harm: whatever part of them was copied is ignored or whole.
  const bool changed = isLast ? now.main != taken_.main || now.journal != taken_.journal : now != taken_;
  if (changed) {
    problem = {
        say("'{0}' keeps changing while it is copied; quit the programs that use it, or copy it yourself and give "
            "the copy.",
            shownPath_)};
    return CopyEnd::kChanged;
  }
  // Merging would fill what is missing with zeros, so look first; a rolled back change may restore the length.
  auto length =
      files_.hasHotJournal ? std::nullopt : checkStoreLength(databasePath_, databasePath_ + "-wal", shownPath_);
  std::string said;
  const int code = settle(databasePath_, said);
  if (code == SQLITE_OK && !length) length = checkStoreLength(databasePath_, databasePath_ + "-wal", shownPath_);
  if (code == SQLITE_OK && !length) {
    for (const FileReading& reading : readings) digests_->note(reading.path, reading.digest);
    return CopyEnd::kDone;
  }
  problem = length ? *length : describeUnreadable(shownPath_, code, said);
  return CopyEnd::kChanged;  // it may have been caught in the middle of something
}

int StoreSnapshot::open(sqlite3** connection) const {
  constexpr int kFlags = SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX;
  const int code = sqlite3_open_v2(immutableUri(databasePath_).c_str(), connection, kFlags, nullptr);
  if (code != SQLITE_OK) return code;
  // A store is foreign data: nothing that its schema says may run code or bend the file format.
  sqlite3_db_config(*connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(*connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(*connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  // What a statement sorts or gathers stays in memory (some ten bytes a message): no trace of a store in /var/tmp.
  sqlite3_exec(*connection, "PRAGMA temp_store=MEMORY", nullptr, nullptr, nullptr);
  return SQLITE_OK;
}

std::optional<StoreProblem> StoreSnapshot::readTableList() const {
  sqlite3* handle = nullptr;
  int code = open(&handle);
  const sqlite::Connection connection(handle);
  if (code == SQLITE_OK) code = readSchema(handle);
  if (code == SQLITE_OK) return std::nullopt;
  return describeUnreadable(shownPath_, code, sqlite3_errmsg(handle));
}

}  // namespace chatsum::device
