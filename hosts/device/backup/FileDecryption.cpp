#include "hosts/device/backup/FileDecryption.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <vector>

#include "hosts/device/backup/CipherContext.h"
#include "hosts/device/stores/FileDescriptor.h"
#include "hosts/device/stores/StoreFiles.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kBlock = 16;
constexpr std::size_t kChunk = std::size_t{1} << 20;

using Block = std::array<unsigned char, kBlock>;

/// Plain bytes, wiped when they go.
class Buffer {
 public:
  explicit Buffer(std::size_t length) : bytes_(length) {}
  ~Buffer() { OPENSSL_cleanse(bytes_.data(), bytes_.size()); }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  [[nodiscard]] unsigned char* data() { return bytes_.data(); }

 private:
  std::vector<unsigned char> bytes_;
};

/// Decrypts whole blocks one after the other.
class Decryptor {
 public:
  Decryptor(const SecretKey& key, const Block& vector) : context_(EVP_CIPHER_CTX_new()) {
    isReady_ = context_ &&
               EVP_DecryptInit_ex(context_.get(), EVP_aes_256_cbc(), nullptr, key.data(), vector.data()) == 1 &&
               EVP_CIPHER_CTX_set_padding(context_.get(), 0) == 1;
  }
  [[nodiscard]] bool decrypt(const unsigned char* from, std::size_t length, unsigned char* to) const {
    int written = 0;
    return isReady_ && EVP_DecryptUpdate(context_.get(), to, &written, from, static_cast<int>(length)) == 1 &&
           static_cast<std::size_t>(written) == length;
  }

 private:
  CipherContext context_;
  bool isReady_ = false;
};

// Answers an errno; a file that ends early is an error here, because its length was asked before.
int readAt(const FileDescriptor& file, std::uint64_t at, unsigned char* bytes, std::size_t length) {
  while (length > 0) {
    const ssize_t got = ::pread(file.get(), bytes, length, static_cast<off_t>(at));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno;
    if (got == 0) return EIO;
    bytes += got;
    at += static_cast<std::uint64_t>(got);
    length -= static_cast<std::size_t>(got);
  }
  return 0;
}

int writeAll(const FileDescriptor& file, const unsigned char* bytes, std::size_t length) {
  while (length > 0) {
    const ssize_t written = ::write(file.get(), bytes, length);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    bytes += written;
    length -= static_cast<std::size_t>(written);
  }
  return 0;
}

/// How many bytes at the end of the last block are padding, 0 when it is not padded.
std::size_t paddingOf(const Block& last) {
  const std::size_t count = last.back();
  if (count == 0 || count > kBlock) return 0;
  const auto start = last.end() - static_cast<std::ptrdiff_t>(count);
  return std::all_of(start, last.end(), [&](unsigned char byte) { return byte == count; }) ? count : 0;
}

class Work {
 public:
  Work(const FileDescriptor& stored, std::uint64_t storedLength, const SecretKey& key,
       std::optional<FileDigest>* digest)
      : stored_(stored),
        key_(key),
        digest_(digest),
        storedLength_(storedLength),
        whole_(storedLength / kBlock * kBlock),
        isBroken_(storedLength % kBlock != 0) {}

  DecryptedFile run(const std::string& to, std::optional<std::uint64_t> size, StoredContent content) {
    DecryptedFile result;
    result.isBroken = isBroken_;
    std::string start;
    std::size_t padding = 0;
    result.error = readStart(start);
    if (result.error == 0) result.error = readPadding(padding);
    if (result.error != 0) return result;
    result.startsOtherwise = content == StoredContent::kDatabase && !start.starts_with(kDatabaseStart);
    if (padding > 0 && !isContent(padding, content, start)) {
      length_ = whole_ - padding;
    } else {
      result.isUnpadded = whole_ > 0;
      length_ = whole_;
      if (content == StoredContent::kAnything && size && *size > 0) length_ = std::min(whole_, *size);
      result.isCutToSize = length_ < whole_;
      result.isBelowSize = size && *size > whole_;
      result.isShort = isCut(result.isBelowSize, content, start);
    }
    OPENSSL_cleanse(start.data(), start.size());
    if (result.startsOtherwise) return result;
    const FileDescriptor target(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    result.error = target ? write(target) : errno;
    if (target && result.error != 0) ::unlink(to.c_str());
    result.length = result.error == 0 ? length_ : 0;
    return result;
  }

 private:
  // The last block can be decrypted alone: the one before is its vector.
  int readPadding(std::size_t& padding) const {
    if (whole_ == 0 || isBroken_) return 0;
    Block vector{}, last{}, plain{};
    int error = whole_ > kBlock ? readAt(stored_, whole_ - 2 * kBlock, vector.data(), kBlock) : 0;
    if (error == 0) error = readAt(stored_, whole_ - kBlock, last.data(), kBlock);
    if (error != 0) return error;
    if (!Decryptor(key_, vector).decrypt(last.data(), kBlock, plain.data())) return EIO;
    padding = paddingOf(plain);
    OPENSSL_cleanse(plain.data(), plain.size());
    return 0;
  }

  /// The first bytes, enough for the header of a database or a -wal; fewer when there are fewer whole blocks.
  int readStart(std::string& start) const {
    constexpr std::uint64_t kHeader = 7 * kBlock;
    const auto length = static_cast<std::size_t>(std::min(whole_, kHeader));
    if (length == 0) return 0;
    std::vector<unsigned char> bytes(length);
    Buffer plain(length);
    if (const int error = readAt(stored_, 0, bytes.data(), length)) return error;
    if (!Decryptor(key_, Block{}).decrypt(bytes.data(), length, plain.data())) return EIO;
    start.assign(plain.data(), plain.data() + length);
    return 0;
  }

  /// Whether an end that looks like padding belongs to the content, by what the content says itself.
  [[nodiscard]] bool isContent(std::size_t padding, StoredContent content, const std::string& start) const {
    if (content == StoredContent::kWal) return walEndsWhole(start, whole_);
    const std::uint64_t stated = content == StoredContent::kDatabase ? statedDatabaseLength(start) : 0;
    return stated > whole_ - padding && stated <= whole_;
  }

  /// Whether an unpadded file is cut off. A -wal knows it better than the list, and so does a database that states its
  /// length, which whoever opens it compares: the missing pages may stand in the -wal.
  [[nodiscard]] bool isCut(bool isBelowSize, StoredContent content, const std::string& start) const {
    if (content == StoredContent::kWal) return isBelowSize && !walEndsWhole(start, whole_);
    return isBelowSize && (content != StoredContent::kDatabase || statedDatabaseLength(start) == 0);
  }

  int write(const FileDescriptor& target) const {
    const std::uint64_t needed = (length_ + kBlock - 1) / kBlock * kBlock;
    // What is left out at the end belongs to the digest of what is stored.
    const std::uint64_t all = digest_ ? storedLength_ : needed;
    const auto chunk = static_cast<std::size_t>(std::min<std::uint64_t>(all, kChunk));
    std::vector<unsigned char> bytes(chunk);
    Buffer plain(chunk);
    const Decryptor decryptor(key_, Block{});
    RunningDigest digest;
    for (std::uint64_t at = 0; at < all;) {
      const auto step = static_cast<std::size_t>(std::min<std::uint64_t>((at < needed ? needed : all) - at, kChunk));
      if (const int error = readAt(stored_, at, bytes.data(), step)) return error;
      if (digest_) digest.add({reinterpret_cast<const char*>(bytes.data()), step});
      if (at >= needed) {
        at += step;
        continue;
      }
      if (!decryptor.decrypt(bytes.data(), step, plain.data())) return EIO;
      const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(length_ - at, step));
      if (const int error = writeAll(target, plain.data(), wanted)) return error;
      at += step;
    }
    if (digest_) *digest_ = digest.finish();
    return 0;
  }

  const FileDescriptor& stored_;
  const SecretKey& key_;
  std::optional<FileDigest>* digest_;
  std::uint64_t storedLength_;
  std::uint64_t whole_;  // bytes in whole blocks
  bool isBroken_;
  std::uint64_t length_ = 0;  // of the content
};

}  // namespace

DecryptedFile decryptFile(const std::string& from, const std::string& to, const SecretKey& key,
                          std::optional<std::uint64_t> size, StoredContent content, std::optional<FileDigest>* digest) {
  const FileDescriptor stored(::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
  struct stat status {};
  DecryptedFile failed;
  if (!stored || ::fstat(stored.get(), &status) != 0) {
    failed.error = errno;
    return failed;
  }
  if (!S_ISREG(status.st_mode)) {
    failed.error = EINVAL;
    return failed;
  }
  return Work(stored, static_cast<std::uint64_t>(status.st_size), key, digest).run(to, size, content);
}

}  // namespace chatsum::device
