// Numbers that look random and are the same for the same seed on every machine, which the standard library's
// distributions do not promise. One thread at a time.
#pragma once

#include <cstdint>
#include <string>

namespace chatsum::device {

class SeededRandom {
 public:
  explicit SeededRandom(std::uint64_t seed) : state_(seed) {}

  /// 64 random bits (SplitMix64).
  std::uint64_t next() {
    state_ += 0x9e3779b97f4a7c15U;
    std::uint64_t bits = state_;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9U;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111ebU;
    return bits ^ (bits >> 31);
  }

  /// 0 to `limit` - 1; `limit` is at least 1.
  std::uint64_t below(std::uint64_t limit) { return next() % limit; }

  /// True in that share of the calls (0 never, 1 always).
  bool chance(double share) { return static_cast<double>(next() >> 11) * 0x1.0p-53 < share; }

  /// 36 characters as A1B2C3D4-E5F6-4A7B-8C9D-0E1F2A3B4C5D.
  std::string guid() {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text(36, '-');
    std::uint64_t bits = 0;
    int left = 0;
    for (std::size_t place = 0; place < text.size(); ++place) {
      if (place == 8 || place == 13 || place == 18 || place == 23) continue;
      if (left == 0) {
        bits = next();
        left = 16;
      }
      text[place] = kDigits[bits & 15];
      bits >>= 4;
      --left;
    }
    // The version and the variant of random GUIDs.
    text[14] = '4';
    text[19] = "89AB"[text[19] & 3];
    return text;
  }

 private:
  std::uint64_t state_;
};

}  // namespace chatsum::device
