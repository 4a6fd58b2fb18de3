#include "platform/system/pdf/Sha256.h"

#include <algorithm>
#include <bit>

namespace chatsum::platform::system {
namespace {

constexpr std::array<std::uint32_t, 64> kRounds{
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

}  // namespace

void Sha256::add(std::span<const std::uint8_t> bytes) {
  size_ += bytes.size();
  while (!bytes.empty()) {
    if (pendingSize_ == 0 && bytes.size() >= pending_.size()) {
      takeBlock(bytes.data());
      bytes = bytes.subspan(pending_.size());
      continue;
    }
    const std::size_t part = std::min(bytes.size(), pending_.size() - pendingSize_);
    std::copy_n(bytes.begin(), part, pending_.begin() + static_cast<std::ptrdiff_t>(pendingSize_));
    pendingSize_ += part;
    bytes = bytes.subspan(part);
    if (pendingSize_ == pending_.size()) {
      takeBlock(pending_.data());
      pendingSize_ = 0;
    }
  }
}

void Sha256::add(std::uint32_t number) {
  const std::array<std::uint8_t, 4> bytes{static_cast<std::uint8_t>(number >> 24),
                                          static_cast<std::uint8_t>(number >> 16),
                                          static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
  add(bytes);
}

Sha256::Digest Sha256::finish() {
  const std::uint64_t bits = size_ * 8;
  constexpr std::array<std::uint8_t, 64> kPadding{0x80};
  const std::size_t padding = (pendingSize_ < 56 ? 56 : 120) - pendingSize_;
  add(std::span(kPadding).first(std::min<std::size_t>(padding, 64)));
  if (padding > 64) add(std::span(kPadding).subspan(1, padding - 64));
  add(static_cast<std::uint32_t>(bits >> 32));
  add(static_cast<std::uint32_t>(bits));
  Digest digest;
  for (std::size_t i = 0; i < digest.size(); ++i)
    digest[i] = static_cast<std::uint8_t>(state_[i / 4] >> (24 - 8 * (i % 4)));
  return digest;
}

void Sha256::takeBlock(const std::uint8_t* block) {
  std::array<std::uint32_t, 64> w;
  for (std::size_t i = 0; i < 16; ++i, block += 4) {
    w[i] = static_cast<std::uint32_t>(block[0]) << 24 | static_cast<std::uint32_t>(block[1]) << 16 |
           static_cast<std::uint32_t>(block[2]) << 8 | static_cast<std::uint32_t>(block[3]);
  }
  for (std::size_t i = 16; i < 64; ++i) {
    const std::uint32_t near = std::rotr(w[i - 2], 17) ^ std::rotr(w[i - 2], 19) ^ (w[i - 2] >> 10);
    const std::uint32_t far = std::rotr(w[i - 15], 7) ^ std::rotr(w[i - 15], 18) ^ (w[i - 15] >> 3);
    w[i] = near + w[i - 7] + far + w[i - 16];
  }
  auto [a, b, c, d, e, f, g, h] = state_;
  for (std::size_t i = 0; i < 64; ++i) {
    const std::uint32_t mixed =
        h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + ((e & f) ^ (~e & g)) + kRounds[i] + w[i];
    const std::uint32_t sum = (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + mixed;
    d = c;
    c = b;
    b = a;
    a = mixed + sum;
  }
  const std::array<std::uint32_t, 8> turned{a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < 8; ++i) state_[i] += turned[i];
}

}  // namespace chatsum::platform::system
