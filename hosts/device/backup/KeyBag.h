// What an encrypted backup keeps of its keys: how the password becomes a key, and the keys of the protection classes,
// wrapped by it. Tags of four letters, each with a length (32 bits, big-endian) and its bytes. Values: any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// The key of one protection class as the bag holds it.
struct WrappedClassKey {
  std::uint32_t protectionClass = 0;
  std::string bytes;  ///< 40 of them, wrapped with the password's key
};

struct KeyBag {
  /// More rounds than any device asks for (ten million); a bag with more would keep a program busy for minutes.
  static constexpr std::uint32_t kMostIterations = 100'000'000;

  std::string salt;
  std::uint32_t iterations = 0;
  /// Of the round before, which bags from iOS 10.2 on have; no salt in an older one.
  std::string firstSalt;
  std::uint32_t firstIterations = 0;
  /// Only those that the password alone unlocks, at least one.
  std::vector<WrappedClassKey> classKeys;

  /// Reads a bag. Classes without a key that can be used are passed over, and so is what follows the last whole item.
  /// The problem, about the backup at `shownPath`, when no class or no salt is left or it asks for unlikely work.
  [[nodiscard]] static StoreResult<KeyBag> parse(std::string_view bytes, const std::string& shownPath);
};

}  // namespace chatsum::device
