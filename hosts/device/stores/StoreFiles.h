// What lies at a store's path, judged without SQLite and without opening anything for writing.
// No state, any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// A store's main file and what SQLite may have put beside it.
struct StoreFiles {
  std::string main;            ///< absolute, links resolved
  std::string wal;             ///< main + "-wal"
  std::string shm;             ///< main + "-shm"
  std::string journal;         ///< main + "-journal"
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

/// Finds the files of the store at `path` and checks that the main file exists, can be read, is a file with something
/// in it, and starts as an SQLite database.
[[nodiscard]] StoreResult<StoreFiles> findStoreFiles(const std::string& path);

/// Compares the size that a database states in its header with the size that it has; pages that stand in the -wal may
/// be missing. `shownPath` is the path for the sentence. Not for a database with an interrupted change.
[[nodiscard]] std::optional<StoreProblem> checkStoreLength(const std::string& file, const std::string& shownPath);

/// Whether the database at `file` is of the kind that keeps new rows in a -wal.
[[nodiscard]] bool usesWal(const std::string& file);

}  // namespace chatsum::device
