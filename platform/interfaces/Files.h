// The file system as the device knows it. Paths are the device's own ("/var/mobile/Library/SMS/sms.db"); an
// implementation may map them to other places. All operations may be called from any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Date.h"
#include "platform/foundation/Error.h"

struct sqlite3;

namespace chatsum::platform {

/// A file opened for writing; closed when it is destroyed. One thread at a time.
class FileHandle {
 public:
  virtual ~FileHandle() = default;
  /// Moves to the end and answers the offset in bytes.
  virtual std::uint64_t seekToEnd() = 0;
  /// Cuts the file at the offset and stands there.
  virtual void truncateAt(std::uint64_t offset) = 0;
  /// Writes all bytes at the current place, or answers the platform's error.
  [[nodiscard]] virtual std::optional<Error> write(std::string_view bytes) = 0;
};

/// What is known of a file; a fact that cannot be read is none.
struct FileAttributes {
  std::optional<Date> creationDate;
  std::optional<std::uint64_t> size;  ///< bytes
};

class Files {
 public:
  virtual ~Files() = default;

  /// The home directory of the process, no trailing "/".
  [[nodiscard]] virtual std::string homeDirectory() const = 0;

  /// True when anything (file, folder, link to something) stands at the path.
  [[nodiscard]] virtual bool exists(const std::string& path) const = 0;
  [[nodiscard]] virtual bool isDirectory(const std::string& path) const = 0;
  /// The names in a folder, one level, in the order of the file system; none when it cannot be read.
  [[nodiscard]] virtual std::optional<std::vector<std::string>> list(const std::string& path) const = 0;
  /// Of the item itself: a link is not followed.
  [[nodiscard]] virtual FileAttributes attributes(const std::string& path) const = 0;

  // The operations below answer none when they succeeded, else the platform's error.

  /// Makes a folder and any missing parents.
  [[nodiscard]] virtual std::optional<Error> createDirectory(const std::string& path) = 0;
  /// Moves or copies one item; an existing destination makes it fail and stays as it is.
  [[nodiscard]] virtual std::optional<Error> move(const std::string& from, const std::string& to) = 0;
  [[nodiscard]] virtual std::optional<Error> copy(const std::string& from, const std::string& to) = 0;
  /// Removes a file, or a folder with all it holds.
  [[nodiscard]] virtual std::optional<Error> remove(const std::string& path) = 0;
  /// Makes an empty file; an existing one is emptied. What is no file (a pipe) makes it fail; it never waits.
  [[nodiscard]] virtual std::optional<Error> createFile(const std::string& path) = 0;
  /// Writes a whole file: beside its place, then moved into it, so that a failure leaves what was there.
  [[nodiscard]] virtual std::optional<Error> writeAtomically(const std::string& path, std::string_view bytes) = 0;

  /// Opens an existing file for writing, never waiting; nullptr when it cannot be opened or is no file (a pipe).
  [[nodiscard]] virtual std::unique_ptr<FileHandle> openForWriting(const std::string& path) = 0;

  /// Opens the database at a path and stores the connection in `*database` (to be closed by the caller, also after a
  /// failure, when it may be null); it is used on any thread, by one at a time. Answers SQLite's result code.
  [[nodiscard]] virtual int openDatabase(const std::string& path, sqlite3** database) = 0;
};

}  // namespace chatsum::platform
