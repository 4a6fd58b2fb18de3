// One SQLite connection, closed when its owner goes. One thread at a time.
#pragma once

#include <sqlite3.h>

#include <string>
#include <utility>

#include "platform/sqlite/MissingMemory.h"

namespace chatsum::sqlite {

/// Owns a `sqlite3*`. An empty one is a connection that was never opened.
class Connection {
 public:
  Connection() = default;
  explicit Connection(sqlite3* handle) : handle_(handle) {}
  Connection(Connection&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Connection& operator=(Connection&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Connection() { sqlite3_close_v2(handle_); }

  [[nodiscard]] sqlite3* get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }

  /// The text of the last failure on this connection (UTF-8, English, SQLite's own).
  [[nodiscard]] std::string lastError() const { return sqlite3_errmsg(handle_); }

  /// Runs statements that give no rows. Answers false on failure; `lastError()` then says why. Missing memory is thrown
  /// as std::bad_alloc.
  [[nodiscard]] bool execute(const std::string& sql) const {
    return unlessMemoryIsMissing(sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr)) == SQLITE_OK;
  }

 private:
  sqlite3* handle_ = nullptr;
};

}  // namespace chatsum::sqlite
