// The file system of this machine, seen through the device's paths. Any thread; lives as long as its platform.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/interfaces/Files.h"

namespace chatsum::platform::system {

struct FilesOptions {
  std::string homeDirectory;  ///< a device path, no trailing "/"
  /// Device path → real path; empty: paths are taken as they are. Called on any thread.
  std::function<std::string(const std::string&)> mapPath;
  /// Opens a database another way than sqlite3_open: stores the connection and answers SQLite's code, or none to leave
  /// it to sqlite3_open of the mapped path. Called on any thread.
  std::function<std::optional<int>(const std::string& devicePath, sqlite3** database)> openDatabase;
};

/// The texts of its errors name files and folders by the device's paths.
class SystemFiles final : public Files {
 public:
  explicit SystemFiles(FilesOptions options) : options_(std::move(options)) {}

  [[nodiscard]] std::string homeDirectory() const override { return options_.homeDirectory; }
  [[nodiscard]] bool exists(const std::string& path) const override;
  [[nodiscard]] bool isDirectory(const std::string& path) const override;
  [[nodiscard]] std::optional<std::vector<std::string>> list(const std::string& path) const override;
  [[nodiscard]] FileAttributes attributes(const std::string& path) const override;
  [[nodiscard]] std::optional<Error> createDirectory(const std::string& path) override;
  [[nodiscard]] std::optional<Error> move(const std::string& from, const std::string& to) override;
  [[nodiscard]] std::optional<Error> copy(const std::string& from, const std::string& to) override;
  [[nodiscard]] std::optional<Error> remove(const std::string& path) override;
  [[nodiscard]] std::optional<Error> createFile(const std::string& path) override;
  [[nodiscard]] std::optional<Error> writeAtomically(const std::string& path, std::string_view bytes) override;
  [[nodiscard]] std::unique_ptr<FileHandle> openForWriting(const std::string& path) override;
  [[nodiscard]] int openDatabase(const std::string& path, sqlite3** database) override;

  /// The bytes of a file; none when it cannot be read, is not a plain file, or is longer than `mostBytes`.
  [[nodiscard]] std::optional<std::string> read(const std::string& path, std::size_t mostBytes) const;

 private:
  /// The real path; empty (nothing stands there) when the path cannot be handed to the system whole.
  [[nodiscard]] std::string real(const std::string& path) const;

  FilesOptions options_;
};

}  // namespace chatsum::platform::system
