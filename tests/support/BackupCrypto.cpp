#include "tests/support/BackupCrypto.h"

#include <openssl/evp.h>

#include <array>
#include <cstdlib>
#include <iostream>

namespace chatsum::test {
namespace {

constexpr std::size_t kKeyLength = 32;

const unsigned char* raw(const std::string& bytes) { return reinterpret_cast<const unsigned char*>(bytes.data()); }

// A backup that is written wrongly would make tests fail far from here.
void require(bool isDone) {
  if (isDone) return;
  std::cerr << "The crypto library failed.\n";
  std::abort();
}

std::string digestOf(const std::string& bytes, const EVP_MD* kind) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> hash{};
  unsigned length = 0;
  require(EVP_Digest(bytes.data(), bytes.size(), hash.data(), &length, kind, nullptr) == 1);
  return {reinterpret_cast<const char*>(hash.data()), length};
}

std::string through(const EVP_CIPHER* cipher, const std::string& plain, const std::string& key, bool isPadded) {
  EVP_CIPHER_CTX* context = EVP_CIPHER_CTX_new();
  EVP_CIPHER_CTX_set_flags(context, EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
  const std::array<unsigned char, 16> zero{};
  const bool isWrap = cipher == EVP_aes_256_wrap();
  require(EVP_EncryptInit_ex(context, cipher, nullptr, raw(key), isWrap ? nullptr : zero.data()) == 1);
  if (!isWrap) EVP_CIPHER_CTX_set_padding(context, isPadded ? 1 : 0);
  std::string out(plain.size() + 64, '\0');
  auto* bytes = reinterpret_cast<unsigned char*>(out.data());
  int length = 0, rest = 0;
  require(EVP_EncryptUpdate(context, bytes, &length, raw(plain), static_cast<int>(plain.size())) == 1);
  require(EVP_EncryptFinal_ex(context, bytes + length, &rest) == 1);
  EVP_CIPHER_CTX_free(context);
  out.resize(static_cast<std::size_t>(length + rest));
  return out;
}

std::string bigEndian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> static_cast<unsigned>(shift));
  return bytes;
}

std::string salt(unsigned char first) { return countingKey(first).substr(0, 20); }

}  // namespace

std::string countingKey(unsigned char first) {
  std::string key;
  for (std::size_t i = 0; i < kKeyLength; ++i) key += static_cast<char>(first + i);
  return key;
}

std::string classKey(std::uint32_t protectionClass) { return countingKey(protectionClass == 3 ? 0x80 : 0xA0); }

std::string manifestFileKey() { return countingKey(0xC0); }

std::string sha1Of(const std::string& bytes) { return digestOf(bytes, EVP_sha1()); }

std::string sha256Of(const std::string& bytes) { return digestOf(bytes, EVP_sha256()); }

std::string hexOf(const std::string& bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string digits;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    digits += {kDigits[value >> 4U], kDigits[value & 0x0FU]};
  }
  return digits;
}

std::string bytesOfHex(const std::string& digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes += static_cast<char>(std::strtoul(digits.substr(i, 2).c_str(), nullptr, 16));
  }
  return bytes;
}

std::string openSslPbkdf2(const char* hash, const std::string& password, const std::string& salted,
                          std::uint32_t iterations) {
  std::string key(kKeyLength, '\0');
  require(PKCS5_PBKDF2_HMAC(password.data(), static_cast<int>(password.size()), raw(salted),
                            static_cast<int>(salted.size()), static_cast<int>(iterations), EVP_get_digestbyname(hash),
                            static_cast<int>(key.size()), reinterpret_cast<unsigned char*>(key.data())) == 1);
  return key;
}

std::string wrapped(const std::string& key, const std::string& by) {
  return through(EVP_aes_256_wrap(), key, by, false);
}

std::string encrypted(const std::string& plain, const std::string& key, bool isPadded) {
  return through(EVP_aes_256_cbc(), plain, key, isPadded);
}

std::string keyBagItem(const std::string& tag, const std::string& bytes) {
  return tag + bigEndian(static_cast<std::uint32_t>(bytes.size())) + bytes;
}

std::string keyBagNumber(const std::string& tag, std::uint32_t value) { return keyBagItem(tag, bigEndian(value)); }

std::string keyBag(const KeyBagOptions& options) {
  const std::string first = salt(0x10), second = salt(0x40);
  std::string passwordKey = options.password;
  if (!options.isOld) passwordKey = openSslPbkdf2("SHA256", passwordKey, first, options.firstIterations);
  passwordKey = openSslPbkdf2("SHA1", passwordKey, second, options.iterations);

  std::string bag = keyBagNumber("VERS", 3) + keyBagNumber("TYPE", 1) + keyBagItem("UUID", std::string(16, '\xAA')) +
                    keyBagItem("HMCK", std::string(40, '\0')) + keyBagNumber("WRAP", 1) + keyBagItem("SALT", second) +
                    keyBagNumber("ITER", options.iterations);
  if (!options.isOld) {
    bag += keyBagNumber("DPWT", 1) + keyBagNumber("DPIC", options.firstIterations) + keyBagItem("DPSL", first);
  }
  for (const std::uint32_t protectionClass : {3U, 4U}) {
    bag += keyBagItem("UUID", std::string(16, static_cast<char>(protectionClass))) +
           keyBagNumber("CLAS", protectionClass) + keyBagNumber("WRAP", 2) + keyBagNumber("KTYP", 0) +
           keyBagItem("WPKY", wrapped(classKey(protectionClass), passwordKey));
  }
  return bag;
}

std::string keyWithClass(std::uint32_t protectionClass, const std::string& key) {
  return std::string(1, static_cast<char>(protectionClass)) + std::string(3, '\0') +
         wrapped(key, classKey(protectionClass));
}

}  // namespace chatsum::test
