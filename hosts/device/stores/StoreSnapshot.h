// A state of a store that can be read without touching the store: its files are never written, locked or joined by new
// ones. A snapshot lives at least as long as the connections to it. One thread takes and destroys it; any number of
// threads may open connections, each using its own.
#pragma once

#include <sqlite3.h>

#include <functional>
#include <optional>
#include <string>

#include "hosts/device/stores/SnapshotFolder.h"
#include "hosts/device/stores/StoreFiles.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

class StoreSnapshot {
 public:
  struct Options {
    /// Where a copy may be put, if one is needed.
    std::string temporaryParent = SnapshotFolder::defaultParent();
    /// Called after a main file was copied and before its -wal is, with the number of the try from 1.
    std::function<void(int)> afterMainCopied;
  };

  /// A main file that stands alone is read where it is, as something that does not change. With a -wal that holds rows
  /// or an interrupted change (or a path too long for SQLite), the files are copied into a private folder, and there
  /// they are made one. So they are when the location asks for digests, which are of the copied bytes. A store that
  /// changes meanwhile, or whose copy cannot be read, is copied again, three times at most. The list of tables has been
  /// read once when this succeeds.
  [[nodiscard]] static StoreResult<StoreSnapshot> take(const StoreLocation& location, const Options& options);
  [[nodiscard]] static StoreResult<StoreSnapshot> take(const StoreLocation& location) {
    return take(location, Options());
  }
  /// The same of a store whose files are named as SQLite names them.
  [[nodiscard]] static StoreResult<StoreSnapshot> take(const std::string& path, const Options& options) {
    return take(locationOf(path), options);
  }
  [[nodiscard]] static StoreResult<StoreSnapshot> take(const std::string& path) { return take(path, Options()); }

  /// Opens one more connection, read only. Answers SQLite's code; as with sqlite3_open, `*connection` is to be closed
  /// even then. The connection has no lock of its own: one thread at a time.
  [[nodiscard]] int open(sqlite3** connection) const;

  /// The path of the database that is read: the source's main file or the private copy.
  [[nodiscard]] const std::string& databasePath() const { return databasePath_; }
  /// The path as it was given, for sentences.
  [[nodiscard]] const std::string& shownPath() const { return shownPath_; }
  /// Whether a private copy is read.
  [[nodiscard]] bool isCopy() const { return folder_.has_value(); }
  /// Whether the source's files still are as they were when the snapshot was taken. What was read from a source that
  /// is not copied and did change may be wrong.
  [[nodiscard]] bool sourceIsUnchanged() const;

 private:
  struct SourceState {
    std::optional<FileState> main;
    std::optional<FileState> wal;
    std::optional<FileState> journal;
    bool operator==(const SourceState&) const = default;
  };
  // How one try at copying ended.
  enum class CopyEnd { kDone, kChanged, kFailed };

  StoreSnapshot(const StoreLocation& location, StoreFiles files);
  [[nodiscard]] SourceState sourceState() const;
  std::optional<StoreProblem> takeCopy(const Options& options);
  CopyEnd copyOnce(const Options& options, int attempt, bool isLast, StoreProblem& problem);
  std::optional<StoreProblem> readTableList() const;

  std::string shownPath_;
  StoreFiles files_;
  std::shared_ptr<ReadDigests> digests_;
  SourceState taken_;
  std::optional<SnapshotFolder> folder_;
  std::string databasePath_;
};

/// SQLite's URI for reading the file at the absolute `path`, never writing or locking it, with whatever its name holds.
[[nodiscard]] std::string immutableUri(const std::string& path);

}  // namespace chatsum::device
