#include "hosts/device/backup/FileDecryption.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <vector>

#include "hosts/device/backup/CipherContext.h"
#include "hosts/device/stores/FileDescriptor.h"

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
  Work(const FileDescriptor& stored, std::uint64_t storedLength, const SecretKey& key)
      : stored_(stored), key_(key), whole_(storedLength / kBlock * kBlock), isBroken_(storedLength % kBlock != 0) {}

  DecryptedFile run(const std::string& to, std::optional<std::uint64_t> size, std::string_view expectedStart) {
    DecryptedFile result;
    result.isBroken = isBroken_;
    std::size_t padding = 0;
    result.error = readPadding(padding);
    if (result.error != 0) return result;
    result.isUnpadded = padding == 0 && whole_ > 0;
    if (size && *size <= whole_) {
      length_ = *size;  // bytes that look like padding belong to the content then
    } else {
      length_ = whole_ - padding;
      result.isShort = size.has_value();
    }
    result.error = checkStart(expectedStart, result.startsOtherwise);
    if (result.error != 0 || result.startsOtherwise) return result;
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

  int checkStart(std::string_view expected, bool& startsOtherwise) const {
    startsOtherwise = expected.size() > length_;
    if (expected.empty() || startsOtherwise) return 0;
    const std::size_t length = (expected.size() + kBlock - 1) / kBlock * kBlock;
    std::vector<unsigned char> bytes(length);
    Buffer plain(length);
    if (const int error = readAt(stored_, 0, bytes.data(), length)) return error;
    if (!Decryptor(key_, Block{}).decrypt(bytes.data(), length, plain.data())) return EIO;
    startsOtherwise = !std::equal(expected.begin(), expected.end(), plain.data(),
                                  [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; });
    return 0;
  }

  int write(const FileDescriptor& target) const {
    const std::uint64_t needed = (length_ + kBlock - 1) / kBlock * kBlock;
    const auto chunk = static_cast<std::size_t>(std::min<std::uint64_t>(needed, kChunk));
    std::vector<unsigned char> bytes(chunk);
    Buffer plain(chunk);
    const Decryptor decryptor(key_, Block{});
    for (std::uint64_t at = 0; at < needed;) {
      const auto step = static_cast<std::size_t>(std::min<std::uint64_t>(needed - at, kChunk));
      if (const int error = readAt(stored_, at, bytes.data(), step)) return error;
      if (!decryptor.decrypt(bytes.data(), step, plain.data())) return EIO;
      const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(length_ - at, step));
      if (const int error = writeAll(target, plain.data(), wanted)) return error;
      at += step;
    }
    return 0;
  }

  const FileDescriptor& stored_;
  const SecretKey& key_;
  std::uint64_t whole_;  // bytes in whole blocks
  bool isBroken_;
  std::uint64_t length_ = 0;  // of the content
};

}  // namespace

DecryptedFile decryptFile(const std::string& from, const std::string& to, const SecretKey& key,
                          std::optional<std::uint64_t> size, std::string_view expectedStart) {
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
  return Work(stored, static_cast<std::uint64_t>(status.st_size), key).run(to, size, expectedStart);
}

}  // namespace chatsum::device
