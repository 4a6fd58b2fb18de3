// One prepared SQLite statement, finalized when its owner goes. One thread at a time, inside its connection's life.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string_view>
#include <utility>

#include "platform/sqlite/MissingMemory.h"

namespace chatsum::sqlite {

/// Owns a `sqlite3_stmt*`. A statement that failed to prepare is empty and converts to false; the reason stands on
/// its connection. Preparing and stepping throw std::bad_alloc when memory is missing, and nothing else.
class Statement {
 public:
  Statement() = default;
  Statement(sqlite3* connection, std::string_view sql) {
    unlessMemoryIsMissing(sqlite3_prepare_v2(connection, sql.data(), static_cast<int>(sql.size()), &handle_, nullptr));
  }
  Statement(Statement&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Statement& operator=(Statement&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Statement() { sqlite3_finalize(handle_); }

  [[nodiscard]] sqlite3_stmt* get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }

  /// Steps once and answers SQLite's code (SQLITE_ROW, SQLITE_DONE or an error).
  int step() const { return unlessMemoryIsMissing(sqlite3_step(handle_)); }
  void reset() const { sqlite3_reset(handle_); }

  // Parameters are numbered from 1. A bound text must outlive the step that reads it.
  void bind(int parameter, std::string_view text) const {
    sqlite3_bind_text64(handle_, parameter, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
  }
  void bind(int parameter, std::int64_t number) const { sqlite3_bind_int64(handle_, parameter, number); }
  void bind(int parameter, double number) const { sqlite3_bind_double(handle_, parameter, number); }
  void bindBlob(int parameter, std::string_view bytes) const {
    sqlite3_bind_blob64(handle_, parameter, bytes.data(), bytes.size(), SQLITE_STATIC);
  }
  void bindNull(int parameter) const { sqlite3_bind_null(handle_, parameter); }

  // Columns are numbered from 0.
  [[nodiscard]] bool isNull(int column) const { return sqlite3_column_type(handle_, column) == SQLITE_NULL; }
  [[nodiscard]] std::int64_t integer(int column) const { return sqlite3_column_int64(handle_, column); }
  [[nodiscard]] double real(int column) const { return sqlite3_column_double(handle_, column); }

  /// The column's text with embedded NULs, empty when it is NULL; valid until the next step.
  [[nodiscard]] std::string_view text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(handle_, column));
    return bytes ? std::string_view(bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_, column)))
                 : std::string_view();
  }
  /// The column's bytes, empty when it is NULL; valid until the next step.
  [[nodiscard]] std::string_view blob(int column) const {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(handle_, column));
    return bytes ? std::string_view(bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_, column)))
                 : std::string_view();
  }

 private:
  sqlite3_stmt* handle_ = nullptr;
};

}  // namespace chatsum::sqlite
