// Real files whose operations fail when a test wants them to. Any thread, as the files behind it; a test sets failures
// while no other thread works.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/interfaces/Files.h"

namespace chatsum::platform::fake {

enum class FileOperation {
  kList,
  kAttributes,
  kSize,  ///< the attributes lack the size, and only that
  kCreateDirectory,
  kMove,
  kCopy,
  kRemove,
  kCreateFile,
  kWriteAtomically,
  kOpenForWriting,
  kHandleWrite,
  kOpenDatabase,
};

class FailingFiles final : public Files {
 public:
  /// The files behind it must outlive it.
  explicit FailingFiles(Files& real) : real_(real) {}

  static constexpr int kForEver = -1;

  /// Makes the next `times` calls of the operation fail without touching a file. Where the operation answers an error
  /// it is the one of `number` (errno); a list or a handle is not given, attributes are none, a database is
  /// SQLITE_CANTOPEN.
  void fail(FileOperation operation, int number, int times = kForEver);
  void succeed(FileOperation operation);
  /// From here on the file at the path has that creation date.
  void setCreationDate(const std::string& path, Date date);

  /// Every call that changes files or opens one, failed ones too, in order: "writeAtomically /a/b.txt", "move /a /b".
  [[nodiscard]] std::vector<std::string> calls() const;
  void forgetCalls();

  [[nodiscard]] std::string homeDirectory() const override { return real_.homeDirectory(); }
  [[nodiscard]] bool exists(const std::string& path) const override { return real_.exists(path); }
  [[nodiscard]] bool isDirectory(const std::string& path) const override { return real_.isDirectory(path); }
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

 private:
  class Handle;
  struct Failure {
    int number;
    int times;
  };
  /// Takes one failure of the operation, if one is due: its errno.
  std::optional<int> take(FileOperation operation) const;
  std::optional<Error> takeError(FileOperation operation, const std::string& path) const;
  void note(const std::string& call);

  Files& real_;
  mutable std::mutex mutex_;
  mutable std::map<FileOperation, Failure> failures_;
  std::map<std::string, Date> creationDates_;
  std::vector<std::string> calls_;
};

}  // namespace chatsum::platform::fake
