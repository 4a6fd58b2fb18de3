// Backups of a test's own and what is needed to look at them.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "hosts/device/backup/BackupSource.h"
#include "hosts/device/stores/StoreSnapshot.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"
#include "tests/hosts/backup/BackupVectors.h"
#include "tests/support/BackupWriter.h"

namespace chatsum::device::testing {

namespace fs = std::filesystem;

inline constexpr const char* kHome = "HomeDomain";
inline constexpr const char* kMedia = "MediaDomain";
inline constexpr const char* kMessagesPath = "Library/SMS/sms.db";
inline constexpr const char* kPicturePath = "Library/SMS/Attachments/ab/11/GUID/IMG_0001.JPG";

inline std::string bytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void putBytes(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

/// Every file below a folder with its bytes and the time of its last change.
inline std::map<std::string, std::string> everythingBelow(const fs::path& folder) {
  std::map<std::string, std::string> found;
  if (!fs::exists(folder)) return found;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    std::string& what = found[fs::relative(entry.path(), folder).string()];
    if (entry.is_regular_file()) {
      what = std::to_string(entry.last_write_time().time_since_epoch().count()) + " " + bytesOf(entry.path());
    }
  }
  return found;
}

class BackupTest : public ::testing::Test {
 protected:
  BackupTest() {
    fs::create_directory(temporary());
    ::setenv("TMPDIR", temporary().c_str(), 1);
  }

  [[nodiscard]] fs::path root() const { return folder_.path(); }
  [[nodiscard]] fs::path backup() const { return root() / "backup"; }
  [[nodiscard]] fs::path temporary() const { return root() / "tmp"; }

  /// The bytes of a database that holds one word; a page of it.
  [[nodiscard]] std::string databaseWith(const std::string& word, std::string* wal = nullptr) const {
    const fs::path path = root() / "made.db";
    for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path.string() + suffix);
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open(path.c_str(), &handle), SQLITE_OK);
    const sqlite::Connection connection(handle);
    EXPECT_TRUE(connection.execute(wal ? "PRAGMA journal_mode=WAL" : "PRAGMA journal_mode=DELETE"));
    EXPECT_TRUE(connection.execute("CREATE TABLE words(word TEXT)"));
    EXPECT_TRUE(connection.execute("INSERT INTO words VALUES('" + word + "')"));
    if (wal) *wal = bytesOf(path.string() + "-wal");
    return bytesOf(path);
  }

  /// A backup with a store and a picture, and whatever a test adds.
  [[nodiscard]] std::unique_ptr<test::BackupWriter> startBackup(const test::BackupOptions& options = {}) const {
    auto writer = std::make_unique<test::BackupWriter>(backup(), options);
    writer->add({.domain = kHome, .path = "Library", .kind = test::BackupEntry::Kind::kFolder});
    writer->add({.domain = kHome, .path = kMessagesPath, .content = databaseWith("hello")});
    writer->add({.domain = kMedia, .path = kPicturePath, .content = "a picture"});
    return writer;
  }
  void writeBackup(const test::BackupOptions& options = {}) const { finish(*startBackup(options)); }
  static void finish(test::BackupWriter& writer) {
    const auto problem = writer.finish();
    ASSERT_FALSE(problem) << *problem;
  }
  [[nodiscard]] static test::BackupOptions encrypted() { return {.password = kPassword}; }

  [[nodiscard]] StoreResult<std::unique_ptr<DeviceSource>> tryToOpen(
      const std::optional<std::string>& password = kPassword) const {
    return BackupSource::open(backup().string(), {.password = [=] { return password; }, .progress = {}});
  }
  [[nodiscard]] std::unique_ptr<DeviceSource> open() const {
    auto source = tryToOpen();
    EXPECT_TRUE(source) << source.problem().sentence;
    return source ? std::move(source.value()) : nullptr;
  }
  [[nodiscard]] std::string problemOfOpening(const std::optional<std::string>& password = kPassword) const {
    const auto source = tryToOpen(password);
    return source ? "" : source.problem().sentence;
  }

  /// The word in a store; the sentence when it cannot be read.
  [[nodiscard]] static std::string wordIn(DeviceSource& source, SourceStore store) {
    const auto location = source.store(store);
    if (!location) return location.problem().sentence;
    if (!location.value()) return "none";
    const auto snapshot = StoreSnapshot::take(*location.value());
    if (!snapshot) return snapshot.problem().sentence;
    sqlite3* handle = nullptr;
    const int code = snapshot.value().open(&handle);
    const sqlite::Connection connection(handle);
    EXPECT_EQ(code, SQLITE_OK);
    const sqlite::Statement row(handle, "SELECT word FROM words");
    return row && row.step() == SQLITE_ROW ? std::string(row.text(0)) : "no row";
  }

 private:
  platform::fake::TemporaryFolder folder_;
};

}  // namespace chatsum::device::testing
