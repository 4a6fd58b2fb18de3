// A set of ROWIDs that is asked for every row of a reading: one bit each, a hash table for numbers out of the ordinary.
// Filled on one thread; asked on any thread afterwards.
#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

namespace chatsum::device {

class RowSet {
 public:
  /// Answers whether it is new.
  bool insert(std::int64_t row) {
    const auto place = static_cast<std::uint64_t>(row);
    if (place >= kMostBits) return others_.insert(row).second;
    const auto word = static_cast<std::size_t>(place / kBits);
    if (word >= bits_.size()) bits_.resize(word + 1);
    const std::uint64_t bit = std::uint64_t{1} << (place % kBits);
    const bool isNew = (bits_[word] & bit) == 0;
    bits_[word] |= bit;
    return isNew;
  }
  [[nodiscard]] bool contains(std::int64_t row) const {
    const auto place = static_cast<std::uint64_t>(row);
    if (place >= kMostBits) return others_.contains(row);
    const auto word = static_cast<std::size_t>(place / kBits);
    return word < bits_.size() && (bits_[word] >> (place % kBits) & 1U) != 0;
  }
  [[nodiscard]] bool isEmpty() const { return bits_.empty() && others_.empty(); }

 private:
  static constexpr std::uint64_t kBits = 64;
  static constexpr std::uint64_t kMostBits = std::uint64_t{1} << 27U;  // 16 MiB of bits

  std::vector<std::uint64_t> bits_;
  std::unordered_set<std::int64_t> others_;
};

}  // namespace chatsum::device
