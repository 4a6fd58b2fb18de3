// The hash SHA-256 (FIPS 180-4): what is equal in it is taken to be equal. Holds no state between calls, any thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace chatsum::platform::system {

class Sha256 {
 public:
  using Digest = std::array<std::uint8_t, 32>;

  void add(std::span<const std::uint8_t> bytes);
  /// Adds a number of four bytes, the highest first.
  void add(std::uint32_t number);
  /// Of all that was added; nothing may be added after it.
  [[nodiscard]] Digest finish();

 private:
  void takeBlock(const std::uint8_t* block);

  std::array<std::uint32_t, 8> state_{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                      0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  std::array<std::uint8_t, 64> pending_{};
  std::size_t pendingSize_ = 0;
  std::uint64_t size_ = 0;
};

}  // namespace chatsum::platform::system
