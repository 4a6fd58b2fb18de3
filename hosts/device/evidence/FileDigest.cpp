#include "hosts/device/evidence/FileDigest.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <vector>

#include "hosts/device/stores/FileDescriptor.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 20;

struct FreeContext {
  void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

class Hash {
 public:
  Hash() : context_(EVP_MD_CTX_new()) { EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr); }
  void add(std::string_view bytes) { EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()); }
  [[nodiscard]] std::string hexadecimal() {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned length = 0;
    EVP_DigestFinal_ex(context_.get(), digest.data(), &length);
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (unsigned i = 0; i < length; ++i) {
      text += kDigits[digest[i] >> 4U];
      text += kDigits[digest[i] & 0xFU];
    }
    return text;
  }

 private:
  std::unique_ptr<EVP_MD_CTX, FreeContext> context_;
};

StoreProblem describe(const std::string& path, int error) {
  if (error == ENOENT || error == ENOTDIR) return {"There is no file '" + path + "'."};
  return {"'" + path + "' cannot be read (" + std::strerror(error) + ")."};
}

}  // namespace

StoreResult<FileDigest> digestOfFile(const std::string& path, const std::function<void(std::uint64_t)>& advanced) {
  // Never waits, even if somebody put a pipe there.
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file) return describe(path, errno);
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) return describe(path, errno);
  if (!S_ISREG(status.st_mode)) return StoreProblem{"'" + path + "' is not an ordinary file."};
  Hash hash;
  FileDigest digest;
  std::vector<char> piece(kPiece);
  for (;;) {
    const ssize_t got = ::read(file.get(), piece.data(), piece.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return describe(path, errno);
    if (got == 0) break;
    hash.add({piece.data(), static_cast<std::size_t>(got)});
    digest.size += static_cast<std::uint64_t>(got);
    if (advanced) advanced(static_cast<std::uint64_t>(got));
  }
  digest.sha256 = hash.hexadecimal();
  return digest;
}

FileDigest digestOf(std::string_view bytes) {
  Hash hash;
  hash.add(bytes);
  return {bytes.size(), hash.hexadecimal()};
}

}  // namespace chatsum::device
