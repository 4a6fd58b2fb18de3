#include "hosts/device/backup/ManifestOpening.h"

#include <optional>
#include <string>
#include <utility>

#include "hosts/device/backup/ComputedManifest.h"
#include "hosts/device/backup/CopyProblems.h"
#include "hosts/device/backup/FileDecryption.h"
#include "hosts/device/backup/ManifestDatabase.h"
#include "hosts/device/backup/ManifestRecords.h"
#include "hosts/device/language/Say.h"

namespace chatsum::device {
namespace {

constexpr const char* kDatabase = "Manifest.db";
constexpr const char* kRecords = "Manifest.mbdb";

using Manifest = std::unique_ptr<BackupManifest>;

class Opening {
 public:
  Opening(const BackupFolder& folder, BackupPlists& lists, const BackupAccess& access)
      : folder_(folder), lists_(lists), access_(access) {}

  StoreResult<Manifest> run() {
    if (folder_.ownFile(kDatabase)) {
      auto database = openDatabase();
      if (database && database.value()->find("HomeDomain", "Library/SMS/sms.db").isReadable) return database;
      if (access_.keys) return database ? damaged(kDatabase) : database.problem();
      return computed(kDatabase, say("is damaged"), database ? std::move(database.value()) : nullptr);
    }
    if (folder_.ownFile(kRecords)) {
      const auto bytes = folder_.readOwnFile(kRecords, ManifestRecords::kMostBytes);
      auto records = std::make_unique<ManifestRecords>(bytes.value_or(""));
      if (records->isWhole()) return Manifest(std::move(records));
      if (!access_.keys) return computed(kRecords, say("is damaged"), std::move(records));
      if (records->isEmpty()) return damaged(kRecords);
      lists_.facts.warnings.push_back(
          say("'{0}' is damaged, so files that are listed after the damage cannot be read.", pathOf(kRecords)));
      return Manifest(std::move(records));
    }
    if (!access_.keys) return computed(kDatabase, say("is missing"), nullptr);
    return StoreProblem{
        say("'{0}' is missing, without which no file of an encrypted backup can be read; copy the backup again.",
            pathOf(kDatabase))};
  }

 private:
  [[nodiscard]] std::string pathOf(const char* name) const { return folder_.path() + "/" + name; }

  [[nodiscard]] StoreProblem damaged(const char* name) const {
    return {say("'{0}' is damaged, without which no file of an encrypted backup can be read; copy the backup again.",
                pathOf(name))};
  }

  StoreResult<Manifest> computed(const char* name, const std::string& trouble, Manifest list) {
    lists_.facts.warnings.push_back(
        say("'{0}' {1}, so the backup's files are found by their names alone.", pathOf(name), trouble));
    return Manifest(std::make_unique<ComputedManifest>(folder_, std::move(list)));
  }

  [[nodiscard]] StoreResult<Manifest> openDatabase() const {
    const auto start = folder_.startOfOwnFile(kDatabase, kDatabaseStart.size());
    // Before iOS 10.2 the list of an encrypted backup is not encrypted itself.
    if (access_.keys && !lists_.manifestKey.empty() && start != kDatabaseStart) return openEncrypted();
    // What somebody's SQLite has put beside it counts, unless it leads elsewhere.
    const auto beside = [&](const char* suffix) {
      return folder_.ownFile(std::string(kDatabase) + suffix).value_or("");
    };
    if (folder_.digests()) {
      for (const char* const suffix : {"-wal", "-journal"}) {
        const std::string path = pathOf(kDatabase) + suffix;
        if (!fileState(path)) folder_.digests()->note(path, std::nullopt);
      }
    }
    return ManifestDatabase::open({.main = pathOf(kDatabase),
                                   .wal = beside("-wal"),
                                   .shm = beside("-shm"),
                                   .journal = beside("-journal"),
                                   .shownPath = pathOf(kDatabase),
                                   .digests = folder_.digests()});
  }

  [[nodiscard]] StoreResult<Manifest> openEncrypted() const {
    std::uint32_t protectionClass = 0;
    const std::string wrapped = wrappedKeyOf(lists_.manifestKey, protectionClass);
    const auto key = access_.keys->unwrap(protectionClass, wrapped);
    if (!key) {
      return StoreProblem{say("The key of '{0}' is damaged (in '{1}'); copy the backup again.", pathOf(kDatabase),
                              pathOf("Manifest.plist"))};
    }
    const std::string copy = access_.copies->pathFor("manifest");
    std::optional<FileDigest> stored;
    const DecryptedFile decrypted = decryptFile(pathOf(kDatabase), copy, *key, std::nullopt, StoredContent::kDatabase,
                                                folder_.digests() ? &stored : nullptr);
    if (folder_.digests() && stored) folder_.digests()->note(pathOf(kDatabase), stored);
    if (decrypted.error != 0) return copyProblem(pathOf(kDatabase), access_.copies->folder(), decrypted.error);
    if (decrypted.startsOtherwise || decrypted.isBroken) return damaged(kDatabase);
    return ManifestDatabase::open({.main = copy, .wal = "", .shm = "", .journal = "", .shownPath = pathOf(kDatabase)});
  }

  const BackupFolder& folder_;
  BackupPlists& lists_;
  BackupAccess access_;
};

}  // namespace

StoreResult<std::unique_ptr<BackupManifest>> openManifest(const BackupFolder& folder, BackupPlists& lists,
                                                          const BackupAccess& access) {
  return Opening(folder, lists, access).run();
}

}  // namespace chatsum::device
