// What lies at a store's path, judged without SQLite and without opening anything for writing.
// No state, any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/device/stores/ReadDigests.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// The sentence about a file that is no database but might be an encrypted one.
[[nodiscard]] std::string looksEncrypted(const std::string& shownPath);

/// Where a store's files lie, which are named by other rules in some sources than SQLite's own.
struct StoreLocation {
  std::string main;       ///< the main file
  std::string wal;        ///< where its -wal would be; empty when it cannot have one
  std::string shm;        ///< the same of its -shm
  std::string journal;    ///< the same of its -journal
  std::string shownPath;  ///< how sentences name the store
  /// When given, what is read of these files is noted there.
  std::shared_ptr<ReadDigests> digests = {};
};

/// The location of a store whose files are named as SQLite names them.
[[nodiscard]] StoreLocation locationOf(const std::string& main);

/// A store's main file and what SQLite may have put beside it.
struct StoreFiles {
  std::string main;  ///< absolute, links resolved
  std::string wal;   ///< maybe missing, as the next two; empty when there can be none
  std::string shm;
  std::string journal;
  bool hasWalRows = false;     ///< the -wal holds more than its header
  bool hasHotJournal = false;  ///< the -journal holds an interrupted change that must be rolled back

  /// The main file alone is the whole store.
  [[nodiscard]] bool standsAlone() const { return !hasWalRows && !hasHotJournal; }
};

/// What tells one state of a file from the next.
struct FileState {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  std::int64_t modifiedSeconds = 0;
  std::int64_t modifiedNanoseconds = 0;
  bool operator==(const FileState&) const = default;
};

/// Nothing when there is no such file.
[[nodiscard]] std::optional<FileState> fileState(const std::string& path);

/// Finds the files of the store at `location` and checks that the main file exists, can be read, is a file with
/// something in it, and starts as an SQLite database. Files beside it are looked for where a link leads to when they
/// are named as SQLite names them.
[[nodiscard]] StoreResult<StoreFiles> findStoreFiles(const StoreLocation& location);
[[nodiscard]] inline StoreResult<StoreFiles> findStoreFiles(const std::string& path) {
  return findStoreFiles(locationOf(path));
}

/// The bytes of a database by its own header (the first 100 bytes of it), 0 when that does not say.
[[nodiscard]] std::uint64_t statedDatabaseLength(std::string_view header);
/// Whether a -wal of `length` bytes that starts as `header` (32 bytes) does ends with a whole page.
[[nodiscard]] bool walEndsWhole(std::string_view header, std::uint64_t length);
/// The same of the -wal at `file`; false when it cannot be read.
[[nodiscard]] bool isWholeWal(const std::string& file);

/// Compares the size that a database states in its header with the size that it has; pages that stand in its -wal (the
/// file `wal`, maybe missing) may be missing. `shownPath` is the path for the sentence. Not for a database with an
/// interrupted change.
[[nodiscard]] std::optional<StoreProblem> checkStoreLength(const std::string& file, const std::string& wal,
                                                           const std::string& shownPath);

/// Whether the database at `file` is of the kind that keeps new rows in a -wal.
[[nodiscard]] bool usesWal(const std::string& file);

}  // namespace chatsum::device
