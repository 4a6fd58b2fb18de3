#include "tests/support/HostileJournal.h"

#include <sqlite3.h>

#include <fstream>

namespace chatsum::test {
namespace {

namespace fs = std::filesystem;

std::string bigEndian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> static_cast<unsigned>(shift));
  return bytes;
}

// Lock page, name, its length, its checksum, magic.
std::string recordOf(const std::string& name, std::uint32_t lockPage) {
  std::uint32_t checksum = 0;
  for (const char c : name) checksum += static_cast<std::uint32_t>(static_cast<signed char>(c));
  return bigEndian(lockPage) + name + bigEndian(static_cast<std::uint32_t>(name.size())) + bigEndian(checksum) +
         "\xD9\xD5\x05\xF9\x20\xA1\x63\xD7";
}

}  // namespace

std::string putHostileJournal(const fs::path& path, const fs::path& victim, const std::string& change) {
  // The change is made elsewhere, so that nothing but the two files is left beside the database.
  const fs::path workshop = path.parent_path() / "workshop";
  fs::create_directory(workshop);
  const fs::path original = workshop / "original";
  fs::copy_file(path, original);
  if (fs::exists(path.string() + "-wal")) fs::copy_file(path.string() + "-wal", original.string() + "-wal");
  sqlite3* database = nullptr;
  std::string problem;
  const auto run = [&](const std::string& sql) {
    if (problem.empty() && sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
      problem = sqlite3_errmsg(database);
    }
  };
  if (sqlite3_open(original.c_str(), &database) != SQLITE_OK) problem = "cannot be opened";
  run("PRAGMA journal_mode=DELETE; PRAGMA cache_size=1; BEGIN");
  run(change);
  if (problem.empty() && sqlite3_db_cacheflush(database) != SQLITE_OK) problem = "cannot be flushed";
  if (problem.empty()) {
    fs::copy_file(original, path, fs::copy_options::overwrite_existing);
    for (const char* suffix : {"-wal", "-shm"}) fs::remove(path.string() + suffix);
    const std::string journal = path.string() + "-journal";
    fs::copy_file(original.string() + "-journal", journal, fs::copy_options::overwrite_existing);
    constexpr std::uint32_t kLockByte = 0x40000000;
    constexpr std::uint32_t kPage = 4096;
    if (std::ifstream(journal, std::ios::binary).get() == 0) problem = "the change is not in the journal yet";
    std::ofstream(journal, std::ios::binary | std::ios::app) << recordOf(victim.string(), kLockByte / kPage + 1);
  }
  sqlite3_close(database);
  fs::remove_all(workshop);
  return problem;
}

}  // namespace chatsum::test
