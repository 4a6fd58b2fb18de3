// Small stores and folders for the tests of hosts/device/stores. Each test has a folder of its own.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "hosts/device/stores/StoreSnapshot.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device::testing {

/// A folder that is gone with the test.
class TestFolder {
 public:
  TestFolder();
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// The path of something in it.
  [[nodiscard]] std::string operator/(const std::string& name) const { return (path_ / name).string(); }
  /// A folder in it.
  [[nodiscard]] std::string folder(const std::string& name) const;

 private:
  std::filesystem::path path_;
};

/// Gives up root's right to read and write everything, while it lives.
class AsOrdinaryUser {
 public:
  AsOrdinaryUser();
  ~AsOrdinaryUser();
  AsOrdinaryUser(const AsOrdinaryUser&) = delete;
  AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;
};
/// Makes `path` the ordinary user's own.
void giveToOrdinaryUser(const std::string& path);

void writeFile(const std::string& path, const std::string& bytes);
[[nodiscard]] std::string readFile(const std::string& path);
/// Every file below a folder with its bytes.
[[nodiscard]] std::map<std::string, std::string> everyFile(const std::filesystem::path& folder);

/// Opens for reading and writing, making the file if need be; fails the test when SQLite does not.
[[nodiscard]] sqlite::Connection openForWriting(const std::string& path);
void run(const sqlite::Connection& connection, const std::string& sql);
/// A new store at `path` in which `sql` was run.
void makeStore(const std::string& path, const std::string& sql);
/// The same, but everything `sql` did stands in the -wal only.
void makeWalStore(const std::string& path, const std::string& sql);
/// A store in the middle of `change`: its pages are partly overwritten, and the -journal knows what was there.
void makeInterruptedStore(const std::string& path, const std::string& sql, const std::string& change);

/// A connection to a snapshot; fails the test when it cannot be opened.
[[nodiscard]] sqlite::Connection connect(const StoreSnapshot& snapshot);
/// All rows, columns joined by '|', NULL as "NULL".
[[nodiscard]] std::vector<std::string> rows(const sqlite::Connection& connection, const std::string& sql);
/// The only value of the only row.
[[nodiscard]] std::string value(const sqlite::Connection& connection, const std::string& sql);

/// The tables of a Messages store as systems 6, 9, 10, 11, 14, 17 and 18 made them: every column of `message`, and of
/// the other tables those that reading needs.
[[nodiscard]] std::string messagesSchema(int system);
[[nodiscard]] std::vector<std::string> messageColumns(int system);

}  // namespace chatsum::device::testing
