#include "hosts/device/stores/FileDigest.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <vector>

#include "hosts/device/language/Say.h"
#include "hosts/device/stores/FileDescriptor.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 20;

StoreProblem describe(const std::string& path, int error) {
  if (error == ENOENT || error == ENOTDIR) return {say("There is no file '{0}'.", path)};
  return {say("'{0}' cannot be read ({1}).", path, std::strerror(error))};
}

}  // namespace

struct RunningDigest::Context {
  Context() : hash(EVP_MD_CTX_new()) { EVP_DigestInit_ex(hash, EVP_sha256(), nullptr); }
  ~Context() { EVP_MD_CTX_free(hash); }
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;
  EVP_MD_CTX* hash;
};

RunningDigest::RunningDigest() : context_(std::make_unique<Context>()) {}

RunningDigest::~RunningDigest() = default;

void RunningDigest::add(std::string_view bytes) {
  EVP_DigestUpdate(context_->hash, bytes.data(), bytes.size());
  size_ += bytes.size();
}

FileDigest RunningDigest::finish() {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned length = 0;
  EVP_DigestFinal_ex(context_->hash, digest.data(), &length);
  constexpr std::string_view kDigits = "0123456789abcdef";
  FileDigest result{size_, ""};
  for (unsigned i = 0; i < length; ++i) {
    result.sha256 += kDigits[digest[i] >> 4U];
    result.sha256 += kDigits[digest[i] & 0xFU];
  }
  return result;
}

StoreResult<FileDigest> digestOfFile(const std::string& path, const std::function<void(std::uint64_t)>& advanced) {
  // Never waits, even if somebody put a pipe there.
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file) return describe(path, errno);
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) return describe(path, errno);
  if (!S_ISREG(status.st_mode)) return StoreProblem{say("'{0}' is not an ordinary file.", path)};
  RunningDigest digest;
  std::vector<char> piece(kPiece);
  for (;;) {
    const ssize_t got = ::read(file.get(), piece.data(), piece.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return describe(path, errno);
    if (got == 0) break;
    digest.add({piece.data(), static_cast<std::size_t>(got)});
    if (advanced) advanced(static_cast<std::uint64_t>(got));
  }
  return digest.finish();
}

FileDigest digestOf(std::string_view bytes) {
  RunningDigest digest;
  digest.add(bytes);
  return digest.finish();
}

}  // namespace chatsum::device
