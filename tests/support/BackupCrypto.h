// The other side of an encrypted backup, for writing one: the same steps by other functions than those that read it.
// Keys are always the same, so two backups of the same files are the same. No state, any thread.
#pragma once

#include <cstdint>
#include <string>

namespace chatsum::test {

/// How a password becomes a key.
struct KeyBagOptions {
  std::string password;
  std::uint32_t iterations = 1000;
  std::uint32_t firstIterations = 1000;
  bool isOld = false;  ///< as before iOS 10.2: without the first round
};

/// 32 bytes that count up from `first`.
[[nodiscard]] std::string countingKey(unsigned char first);
/// The keys of the classes 3 and 4, and of the list of files, which is of class 4.
[[nodiscard]] std::string classKey(std::uint32_t protectionClass);
[[nodiscard]] std::string manifestFileKey();

[[nodiscard]] std::string sha1Of(const std::string& bytes);
[[nodiscard]] std::string sha256Of(const std::string& bytes);
[[nodiscard]] std::string hexOf(const std::string& bytes);
[[nodiscard]] std::string bytesOfHex(const std::string& digits);

/// 32 bytes of PKCS5_PBKDF2_HMAC with "SHA1" or "SHA256".
[[nodiscard]] std::string openSslPbkdf2(const char* hash, const std::string& password, const std::string& salt,
                                        std::uint32_t iterations);
/// AES key wrap (RFC 3394): 40 bytes.
[[nodiscard]] std::string wrapped(const std::string& key, const std::string& by);
/// AES-256-CBC with a zero vector; without padding, the length must be a multiple of 16.
[[nodiscard]] std::string encrypted(const std::string& plain, const std::string& key, bool isPadded = true);

/// A tag of a key bag with its bytes.
[[nodiscard]] std::string keyBagItem(const std::string& tag, const std::string& bytes);
[[nodiscard]] std::string keyBagNumber(const std::string& tag, std::uint32_t value);
/// A whole bag with the classes 3 and 4.
[[nodiscard]] std::string keyBag(const KeyBagOptions& options);
/// The number of the class (little-endian) and the wrapped key, as lists of files and plists have it.
[[nodiscard]] std::string keyWithClass(std::uint32_t protectionClass, const std::string& key);

}  // namespace chatsum::test
