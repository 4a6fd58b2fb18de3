#include "hosts/device/backup/ManifestRecords.h"

#include <optional>

#include "hosts/device/backup/BackupFolder.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kStart("mbdb\x05\x00", 6);
constexpr std::uint64_t kNoText = 0xFFFF;

// Kinds in the highest bits of a mode, as of files of any Unix.
constexpr std::uint64_t kKindBits = 0xF000, kFolderKind = 0x4000, kLinkKind = 0xA000;

/// Takes numbers and texts off the front; whatever goes beyond the end ends it.
class Cursor {
 public:
  explicit Cursor(std::string_view bytes) : rest_(bytes) {}

  [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }
  [[nodiscard]] bool hasFailed() const { return hasFailed_; }

  std::uint64_t number(std::size_t width) {
    std::uint64_t value = 0;
    for (const char byte : take(width)) value = (value << 8U) | static_cast<std::uint8_t>(byte);
    return value;
  }
  std::string_view text() {
    const std::uint64_t length = number(2);
    return length == kNoText ? std::string_view() : take(static_cast<std::size_t>(length));
  }

 private:
  std::string_view take(std::size_t length) {
    if (hasFailed_ || length > rest_.size()) {
      hasFailed_ = true;
      return {};
    }
    const std::string_view taken = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return taken;
  }

  std::string_view rest_;
  bool hasFailed_ = false;
};

struct Record {
  std::string_view domain, path, key;
  std::uint64_t mode = 0, length = 0, protectionClass = 0;
};

std::optional<Record> readRecord(Cursor& cursor) {
  Record record;
  record.domain = cursor.text();
  record.path = cursor.text();
  cursor.text();  // where a link leads
  cursor.text();  // a hash
  record.key = cursor.text();
  record.mode = cursor.number(2);
  cursor.number(8);                              // inode
  for (int i = 0; i < 5; ++i) cursor.number(4);  // user, group, three times
  record.length = cursor.number(8);
  record.protectionClass = cursor.number(1);
  const std::uint64_t properties = cursor.number(1);
  for (std::uint64_t i = 0; i < properties; ++i) {
    cursor.text();
    cursor.text();
  }
  if (cursor.hasFailed()) return std::nullopt;
  return record;
}

BackupFile::Kind kindOf(std::uint64_t mode) {
  if ((mode & kKindBits) == kFolderKind) return BackupFile::Kind::kFolder;
  return (mode & kKindBits) == kLinkKind ? BackupFile::Kind::kLink : BackupFile::Kind::kFile;
}

bool isWanted(std::string_view domain) {
  return domain == "HomeDomain" || domain == "MediaDomain" || domain == "WirelessDomain";
}

}  // namespace

ManifestRecords::ManifestRecords(std::string_view bytes) {
  if (bytes.size() > kMostBytes || !bytes.starts_with(kStart)) return;
  Cursor cursor(bytes.substr(kStart.size()));
  while (!cursor.isAtEnd()) {
    const auto record = readRecord(cursor);
    if (!record) return;
    if (!isWanted(record->domain)) continue;
    BackupFile file;
    file.name = std::string(record->domain).append("-").append(record->path);
    file.id = fileIdOf(record->domain, record->path);
    file.kind = kindOf(record->mode);
    file.size = record->length;
    file.wrappedKey = wrappedKeyOf(record->key, file.protectionClass);
    file.protectionClass = static_cast<std::uint32_t>(record->protectionClass);
    files_.insert_or_assign(file.name, std::move(file));
  }
  isWhole_ = true;
}

ManifestAnswer ManifestRecords::find(std::string_view domain, std::string_view relativePath) const {
  ManifestAnswer answer;
  const auto found = files_.find(std::string(domain).append("-").append(relativePath));
  if (found != files_.end()) answer.file = found->second;
  answer.isReadable = answer.file || isWhole_;
  return answer;
}

}  // namespace chatsum::device
