// Passes every file operation on and remembers writes that fail, because a writer may ignore what its handle answers.
// Any thread; the wrapped files must outlive it.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/interfaces/Files.h"

namespace chatsum::device {

class WatchedFiles final : public platform::Files {
 public:
  explicit WatchedFiles(platform::Files& files) : files_(files) {}

  /// What it answers is held while a file is made, so that a host can keep new files from appearing.
  using Guard = std::function<std::unique_lock<std::timed_mutex>()>;

  /// Forgets what was seen so far.
  void startWatching();
  /// Set while no other thread makes files; empty: nothing is held.
  void guardNewFiles(Guard guard) { guard_ = std::move(guard); }
  /// The first failure of a write through a handle since then, as a sentence.
  [[nodiscard]] std::optional<std::string> writeFailure() const;
  /// The bytes that were written through handles since then.
  [[nodiscard]] std::uint64_t bytesWritten() const { return bytesWritten_; }
  /// The bytes that stood already in files that were written on to at their ends since then.
  [[nodiscard]] std::uint64_t bytesFound() const { return bytesFound_; }
  /// How many files were written whole or opened for writing since then.
  [[nodiscard]] std::uint64_t filesBegun() const { return filesBegun_; }
  /// The first failure since then of anything that makes or writes a file or a folder, as a sentence.
  [[nodiscard]] std::optional<std::string> firstFailure() const;

  /// Another home from here on; empty: that of the wrapped files.
  void setHomeDirectory(std::string home);

  [[nodiscard]] std::string homeDirectory() const override;
  [[nodiscard]] bool exists(const std::string& path) const override { return files_.exists(path); }
  [[nodiscard]] bool isDirectory(const std::string& path) const override { return files_.isDirectory(path); }
  [[nodiscard]] std::optional<std::vector<std::string>> list(const std::string& path) const override {
    return files_.list(path);
  }
  [[nodiscard]] platform::FileAttributes attributes(const std::string& path) const override {
    return files_.attributes(path);
  }
  [[nodiscard]] std::optional<Error> createDirectory(const std::string& path) override {
    return noted(files_.createDirectory(path));
  }
  [[nodiscard]] std::optional<Error> move(const std::string& from, const std::string& to) override {
    return files_.move(from, to);
  }
  [[nodiscard]] std::optional<Error> copy(const std::string& from, const std::string& to) override {
    return files_.copy(from, to);
  }
  /// Files only, whatever the wrapped ones do with folders, and the manifest of evidence beside a report with it.
  [[nodiscard]] std::optional<Error> remove(const std::string& path) override;
  [[nodiscard]] std::optional<Error> createFile(const std::string& path) override {
    const auto held = guard_ ? guard_() : std::unique_lock<std::timed_mutex>();
    return noted(files_.createFile(path));
  }
  [[nodiscard]] std::optional<Error> writeAtomically(const std::string& path, std::string_view bytes) override {
    auto error = noted(files_.writeAtomically(path, bytes));
    if (!error) ++filesBegun_;
    return error;
  }
  [[nodiscard]] std::unique_ptr<platform::FileHandle> openForWriting(const std::string& path) override;
  [[nodiscard]] int openDatabase(const std::string& path, sqlite3** database) override {
    return files_.openDatabase(path, database);
  }

 private:
  class WatchedHandle;

  /// The same, remembered when it is the first.
  std::optional<Error> noted(std::optional<Error> error);

  platform::Files& files_;
  Guard guard_;
  std::atomic<std::uint64_t> bytesWritten_ = 0, bytesFound_ = 0, filesBegun_ = 0;
  mutable std::mutex mutex_;
  std::optional<std::string> writeFailure_, firstFailure_;
  std::string home_;
};

}  // namespace chatsum::device
