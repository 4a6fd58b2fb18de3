#include "hosts/device/backup/BackupFolder.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>

#include "hosts/device/stores/FileDescriptor.h"
#include "hosts/device/stores/StoreFiles.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kIdLength = 40;

bool isKind(const std::string& path, mode_t kind) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && (status.st_mode & S_IFMT) == kind;
}

bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// Never waits, even if somebody put a pipe there.
FileDescriptor openForReading(const std::string& path) {
  return FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
}

/// Bytes of an ordinary file; none for anything else.
std::optional<std::uint64_t> lengthOf(const FileDescriptor& file) {
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
}

std::optional<std::string> readStart(const FileDescriptor& file, std::size_t length) {
  std::string bytes(length, '\0');
  std::size_t have = 0;
  while (have < length) {
    const ssize_t got = ::read(file.get(), bytes.data() + have, length - have);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    have += static_cast<std::size_t>(got);
  }
  bytes.resize(have);
  return bytes;
}

}  // namespace

bool isFileId(std::string_view text) {
  return text.size() == kIdLength && std::all_of(text.begin(), text.end(), isHexDigit);
}

std::string fileIdOf(std::string_view domain, std::string_view relativePath) {
  constexpr char kDigits[] = "0123456789abcdef";
  const std::string name = std::string(domain).append("-").append(relativePath);
  std::array<unsigned char, EVP_MAX_MD_SIZE> hash{};
  unsigned length = 0;
  std::string id;
  if (EVP_Digest(name.data(), name.size(), hash.data(), &length, EVP_sha1(), nullptr) != 1) return id;
  for (unsigned i = 0; i < length; ++i) id += {kDigits[hash[i] >> 4U], kDigits[hash[i] & 0x0FU]};
  return id;
}

BackupFolder::BackupFolder(const std::string& path, std::shared_ptr<ReadDigests> digests)
    : path_(path), digests_(std::move(digests)) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::canonical(path, error);
  if (!error) path_ = real.string();
  while (path_.size() > 1 && path_.back() == '/') path_.pop_back();
}

std::optional<std::string> BackupFolder::ownFile(const std::string& name) const {
  std::string path = path_ + "/" + name;
  if (!isKind(path, S_IFREG)) return std::nullopt;
  return path;
}

std::optional<std::string> BackupFolder::readOwnFile(const std::string& name, std::size_t most) const {
  const FileDescriptor file = openForReading(path_ + "/" + name);
  const auto length = lengthOf(file);
  if (digests_ && !fileState(path_ + "/" + name)) digests_->note(path_ + "/" + name, std::nullopt);
  if (!length || *length > most) return std::nullopt;
  auto bytes = readStart(file, static_cast<std::size_t>(*length));
  if (digests_ && bytes) digests_->note(path_ + "/" + name, digestOf(*bytes));
  return bytes;
}

std::optional<std::string> BackupFolder::startOfOwnFile(const std::string& name, std::size_t length) const {
  const FileDescriptor file = openForReading(path_ + "/" + name);
  if (!lengthOf(file)) return std::nullopt;
  return readStart(file, length);
}

std::optional<std::string> BackupFolder::storedFile(std::string_view id) const {
  if (!isFileId(id)) return std::nullopt;
  const std::string shelf = path_ + "/" + std::string(id.substr(0, 2));
  std::string path = shelf + "/" + std::string(id);
  if (isKind(shelf, S_IFDIR) && isKind(path, S_IFREG)) return path;
  path = path_ + "/" + std::string(id);
  if (isKind(path, S_IFREG)) return path;
  return std::nullopt;
}

std::vector<std::string> BackupFolder::placesWithout(std::string_view id) const {
  std::vector<std::string> places;
  if (!isFileId(id)) return places;
  const auto stored = storedFile(id);
  for (const std::string& shelf : {path_ + "/" + std::string(id.substr(0, 2)), path_}) {
    std::string path = shelf + "/" + std::string(id);
    if (stored == path) break;
    places.push_back(std::move(path));
  }
  return places;
}

}  // namespace chatsum::device
