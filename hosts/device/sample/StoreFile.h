// A SQLite file that a generator fills in one go: nothing stands under its name before it is complete.
// One thread at a time. Dropped without `finish`, it leaves nothing behind.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/sqlite/Connection.h"

namespace chatsum::device {

/// Where the rows of a finished store stand: in the file itself, or all in the -wal beside a main file of one page
/// (4,096 bytes) that has no tables yet.
enum class Placement { mainFile, wal };

class StoreFile {
 public:
  /// Starts a store that is to stand at `path` (its folder is made). Runs `tables`, then opens the one transaction that
  /// everything is written in.
  StoreFile(std::filesystem::path path, Placement placement, const std::string& tables);
  ~StoreFile();
  StoreFile(const StoreFile&) = delete;
  StoreFile& operator=(const StoreFile&) = delete;

  /// For statements of the caller's own, inside the transaction.
  [[nodiscard]] sqlite3* connection() const { return connection_.get(); }

  /// Runs statements without results; a failure is kept for `finish`.
  void execute(const std::string& sql);

  /// Keeps the reason of a failure that the caller saw on the connection. The first one stays.
  void noteFailure();

  [[nodiscard]] bool failed() const { return failure_.has_value(); }

  /// Runs `indexes`, commits, closes, and puts the file in its place, over an older one. Every prepared statement has
  /// to be gone before. Answers nothing when all is well, else one sentence about the first failure; the place is then
  /// as it was before.
  [[nodiscard]] std::optional<std::string> finish(const std::string& indexes);

 private:
  void discard();
  void noteFailure(const std::string& reason);
  [[nodiscard]] std::filesystem::path partial(std::string_view suffix) const;

  std::filesystem::path path_;
  Placement placement_;
  sqlite::Connection connection_;
  std::optional<std::string> failure_;
};

}  // namespace chatsum::device
