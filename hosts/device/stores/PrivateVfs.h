// What SQLite may touch while it makes a copied store whole. A journal can name any file, and SQLite deletes the file
// that it names: whoever wrote the source would choose what this user loses.
#pragma once

#include <sqlite3.h>

#include <string>

namespace chatsum::device {

/// A file system for SQLite that knows one database with its -journal and -wal. Nothing else is opened, made, deleted
/// or even looked for: SQLite fails instead. It is registered while it lives, and lives longer than every connection
/// opened with its name. Any thread, one at a time.
class PrivateVfs {
 public:
  explicit PrivateVfs(const std::string& database);
  ~PrivateVfs();
  PrivateVfs(const PrivateVfs&) = delete;
  PrivateVfs& operator=(const PrivateVfs&) = delete;

  /// The name for sqlite3_open_v2, which takes no path but the one given above, letter for letter.
  [[nodiscard]] const char* name() const { return vfs_.zName; }

 private:
  [[nodiscard]] bool isOwn(const char* path) const;
  [[nodiscard]] bool isBeside(const char* path) const;

  sqlite3_vfs* system_;
  sqlite3_vfs vfs_{};
  std::string database_, journal_, wal_;
};

}  // namespace chatsum::device
