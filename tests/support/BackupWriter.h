// Writes backups as Finder and iTunes lay them out, from files of a test's own or from a whole device folder. The same
// input gives the same bytes. One thread at a time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace chatsum::test {

struct BackupOptions {
  std::optional<std::string> password = {};  ///< given: the backup is encrypted
  bool isFlat = false;                       ///< as up to iOS 9: Manifest.mbdb, all files beside each other
  bool isXml = false;                        ///< the property lists; else they are binary
  bool hasOldKeyBag = false;                 ///< as before iOS 10.2, when Manifest.db was not encrypted either
  std::uint32_t iterations = 1000, firstIterations = 1000;
  std::string snapshotState = "finished";
  std::optional<std::string> keyBag = {};  ///< instead of a good one
};

/// What the lists of every backup say.
inline constexpr const char* kBackupDeviceName = "Maya's iPhone";
inline constexpr const char* kBackupPhoneNumber = "+1 (555) 010-0142";

/// One thing of the device. What is not as it should be is for tests.
struct BackupEntry {
  enum class Kind { kFile = 1, kFolder = 2, kLink = 4 };

  std::string domain;
  std::string path;
  std::string content = {};  ///< of a link, where it leads
  Kind kind = Kind::kFile;
  std::uint32_t protectionClass = 3;       ///< 3 or 4
  std::optional<std::uint64_t> size = {};  ///< what the list says, else the truth
  std::optional<std::string> id = {};      ///< the same
  bool isPadded = true;
  bool hasKey = true;
  bool isStored = true;
};

class BackupWriter {
 public:
  /// The folder is made.
  BackupWriter(std::filesystem::path folder, BackupOptions options);

  /// Stores a file; the list is written by `finish`.
  void add(const BackupEntry& entry);
  /// Writes the lists. Answers nothing when all is well, else one sentence.
  [[nodiscard]] std::optional<std::string> finish();

  /// Where a file of the device stands.
  [[nodiscard]] std::filesystem::path storedPath(const std::string& domain, const std::string& path) const;

 private:
  [[nodiscard]] bool isEncrypted() const { return options_.password.has_value(); }
  [[nodiscard]] std::string keyOf(const BackupEntry& entry) const;
  [[nodiscard]] std::filesystem::path placeOf(const std::string& id) const;
  void write(const std::filesystem::path& path, const std::string& bytes);
  void writeLists();
  void writeDatabase();
  void writeRecords();

  std::filesystem::path folder_;
  BackupOptions options_;
  std::vector<BackupEntry> entries_;
  std::optional<std::string> failure_;
};

/// Makes a backup of the device whose "/" is `device`. One that is not encrypted leaves the call lists out, as real
/// ones do. Answers nothing when all is well, else one sentence.
[[nodiscard]] std::optional<std::string> writeBackup(const std::filesystem::path& device,
                                                     const std::filesystem::path& backup, const BackupOptions& options);

}  // namespace chatsum::test
