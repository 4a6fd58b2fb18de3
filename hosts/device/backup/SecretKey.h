// A key of AES-256 that is wiped from memory when its owner goes. Values: any thread, one at a time.
#pragma once

#include <openssl/crypto.h>

#include <array>
#include <cstddef>

namespace chatsum::device {

class SecretKey {
 public:
  static constexpr std::size_t kLength = 32;

  SecretKey() = default;
  SecretKey(const SecretKey&) = default;
  SecretKey& operator=(const SecretKey&) = default;
  ~SecretKey() { OPENSSL_cleanse(bytes_.data(), bytes_.size()); }

  [[nodiscard]] unsigned char* data() { return bytes_.data(); }
  [[nodiscard]] const unsigned char* data() const { return bytes_.data(); }

 private:
  std::array<unsigned char, kLength> bytes_{};
};

}  // namespace chatsum::device
