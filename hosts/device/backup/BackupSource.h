// A Finder or iTunes backup, encrypted or not, of any age. What is decrypted stands in a private folder that goes with
// the source. `store`, `originals` on one thread, the questions about files of messages on any.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/backup/BackupFolder.h"
#include "hosts/device/backup/BackupManifest.h"
#include "hosts/device/backup/FileDecryption.h"
#include "hosts/device/backup/KeyRing.h"
#include "hosts/device/backup/PrivateCopies.h"
#include "hosts/device/source/DeviceSource.h"
#include "hosts/device/source/SourceAccess.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

class BackupSource final : public DeviceSource {
 public:
  /// Whether the folder at this path has what only a backup has.
  [[nodiscard]] static bool isBackup(const std::string& folder);
  /// What the backup says of its device; nothing is unlocked. For a folder that is a backup.
  [[nodiscard]] static SourceFacts factsOf(const std::string& folder);

  /// Opens the backup's list of files, for which an encrypted one needs its password. No store is brought out yet.
  [[nodiscard]] static StoreResult<std::unique_ptr<DeviceSource>> open(const std::string& folder,
                                                                       const SourceAccess& access);

  [[nodiscard]] StoreResult<std::optional<StoreLocation>> store(SourceStore store) override;
  [[nodiscard]] std::string whyMissing(SourceStore store) const override;
  [[nodiscard]] std::vector<SourceFile> originals(SourceStore store) const override;
  [[nodiscard]] std::vector<SourceFile> absentees(SourceStore store) const override;
  [[nodiscard]] std::vector<SourceFile> lists() const override;
  /// A folder among the attachments is no file.
  [[nodiscard]] std::optional<std::string> fileOfMessage(std::string_view devicePath) const override;
  [[nodiscard]] bool isDoubtful(const std::string& file) const override;
  [[nodiscard]] std::optional<SourceFile> originalOfMessage(std::string_view devicePath) const override;

 private:
  struct Parts;
  struct Opened {
    StoreResult<std::optional<StoreLocation>> location;
    std::vector<SourceFile> originals;
    std::vector<SourceFile> absentees = {};
    std::vector<std::string> warnings = {};
  };

  BackupSource(SourceFacts facts, Parts parts);
  [[nodiscard]] ManifestAnswer listed(std::string_view domain, std::string_view path) const;
  [[nodiscard]] Opened bringOutStore(SourceStore store) const;
  void noteAbsence(const std::string& name, const std::string& id, Opened& opened) const;
  [[nodiscard]] StoreResult<std::string> bringOut(const BackupFile& file, const SourceFile& original,
                                                  StoredContent content, std::vector<std::string>& warnings) const;
  [[nodiscard]] std::optional<StoreProblem> bringOutBeside(const std::string& domain, const std::string& path,
                                                           Opened& opened, StoreLocation& location) const;
  [[nodiscard]] std::optional<BackupFile> listedFileOfMessage(std::string_view devicePath) const;
  [[nodiscard]] std::string shownPathOf(const std::string& name) const;

  BackupFolder folder_;
  std::optional<KeyRing> keys_;
  std::unique_ptr<PrivateCopies> copies_;  // as long as there are keys
  std::unique_ptr<BackupManifest> manifest_;
  std::map<SourceStore, Opened> stores_;
  mutable std::mutex doubtsMutex_;
  mutable std::set<std::string> doubts_;  // copies of files of messages
};

}  // namespace chatsum::device
