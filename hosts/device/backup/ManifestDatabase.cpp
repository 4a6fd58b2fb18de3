#include "hosts/device/backup/ManifestDatabase.h"

#include <utility>

#include "hosts/device/backup/BackupFolder.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/plist/PlistValue.h"
#include "hosts/device/stores/StoreCheck.h"

namespace chatsum::device {
namespace {

// Columns of the look-up.
constexpr int kFileId = 0, kFlags = 1, kDescription = 2;

constexpr std::int64_t kFolderFlag = 2, kLinkFlag = 4;

const StoreKind& manifestKind() {
  static const StoreKind kind = {toSay("a backup's list of files"),
                                 {{"Files", {"fileID", "domain", "relativePath", "flags", "file"}}}};
  return kind;
}

BackupFile::Kind kindOf(std::int64_t flags) {
  if (flags == kFolderFlag) return BackupFile::Kind::kFolder;
  return flags == kLinkFlag ? BackupFile::Kind::kLink : BackupFile::Kind::kFile;
}

/// Adds what the archived description says. A row without a readable one can still name a file.
void describe(std::string_view archive, BackupFile& file) {
  const auto list = parsePlist(archive);
  const auto description = list ? unarchived(*list) : std::nullopt;
  if (!description) return;
  const auto size = (*description)["Size"].asInteger();
  if (size && *size >= 0) file.size = static_cast<std::uint64_t>(*size);
  if (const std::string* key = (*description)["EncryptionKey"].asData()) {
    file.wrappedKey = wrappedKeyOf(*key, file.protectionClass);
  }
  const auto protectionClass = (*description)["ProtectionClass"].asInteger();
  if (protectionClass) file.protectionClass = static_cast<std::uint32_t>(*protectionClass);
}

}  // namespace

StoreResult<std::unique_ptr<BackupManifest>> ManifestDatabase::open(const StoreLocation& location) {
  auto snapshot = StoreSnapshot::take(location);
  if (!snapshot) return snapshot.problem();
  sqlite3* handle = nullptr;
  const int code = snapshot.value().open(&handle);
  sqlite::Connection connection(handle);
  if (code != SQLITE_OK) {
    return StoreProblem{
        say("'{0}' cannot be opened ({1}); copy the backup again.", location.shownPath, sqlite3_errstr(code))};
  }
  if (auto problem = checkStore(handle, snapshot.value(), manifestKind())) return *problem;
  std::unique_ptr<ManifestDatabase> manifest(new ManifestDatabase(std::move(snapshot.value()), std::move(connection)));
  if (!manifest->row_) {
    return StoreProblem{
        say("'{0}' is damaged ({1}); copy the backup again.", location.shownPath, manifest->connection_.lastError())};
  }
  return std::unique_ptr<BackupManifest>(std::move(manifest));
}

ManifestDatabase::ManifestDatabase(StoreSnapshot snapshot, sqlite::Connection connection)
    : snapshot_(std::move(snapshot)),
      connection_(std::move(connection)),
      row_(connection_.get(), "SELECT fileID, flags, file FROM Files WHERE domain = ?1 AND relativePath = ?2 LIMIT 1") {
}

ManifestAnswer ManifestDatabase::find(std::string_view domain, std::string_view relativePath) const {
  const std::lock_guard lock(mutex_);
  row_.reset();
  row_.bind(1, domain);
  row_.bind(2, relativePath);
  ManifestAnswer answer;
  const int code = row_.step();
  if (code == SQLITE_ROW) {
    BackupFile file;
    file.name = std::string(domain).append("-").append(relativePath);
    file.id = row_.text(kFileId);
    file.kind = kindOf(row_.integer(kFlags));
    describe(row_.blob(kDescription), file);
    // Anything else might be a path to somewhere.
    answer.isReadable = isFileId(file.id);
    if (answer.isReadable) answer.file = std::move(file);
  } else {
    answer.isReadable = code == SQLITE_DONE;
  }
  row_.reset();
  return answer;
}

}  // namespace chatsum::device
