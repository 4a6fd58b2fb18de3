#include "hosts/device/backup/KeyWrap.h"

#include <algorithm>
#include <array>

#include "hosts/device/backup/CipherContext.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kWrappedLength = SecretKey::kLength + 8;

}  // namespace

std::optional<SecretKey> unwrapKey(const SecretKey& by, std::string_view wrapped) {
  if (wrapped.size() != kWrappedLength) return std::nullopt;
  const CipherContext context(EVP_CIPHER_CTX_new());
  if (!context) return std::nullopt;
  EVP_CIPHER_CTX_set_flags(context.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
  if (EVP_DecryptInit_ex(context.get(), EVP_aes_256_wrap(), nullptr, by.data(), nullptr) != 1) return std::nullopt;
  // The cipher may use the whole length of what it is given.
  std::array<unsigned char, kWrappedLength> plain{};
  int length = 0;
  const int code = EVP_DecryptUpdate(context.get(), plain.data(), &length,
                                     reinterpret_cast<const unsigned char*>(wrapped.data()), kWrappedLength);
  std::optional<SecretKey> key;
  if (code == 1 && length == static_cast<int>(SecretKey::kLength)) {
    key.emplace();
    std::copy_n(plain.begin(), SecretKey::kLength, key->data());
  }
  OPENSSL_cleanse(plain.data(), plain.size());
  return key;
}

}  // namespace chatsum::device
