// Which of many rows are ticked: a bit for each. One thread at a time.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace chatsum::desktop {

class RowTicks {
 public:
  /// None is ticked.
  explicit RowTicks(std::size_t rows = 0) : rows_(rows), words_((rows + kBits - 1) / kBits) {}

  [[nodiscard]] std::size_t rows() const { return rows_; }
  [[nodiscard]] std::size_t count() const { return count_; }
  /// False for what is no row.
  [[nodiscard]] bool has(std::size_t row) const {
    return row < rows_ && (words_[row / kBits] >> (row % kBits) & 1U) != 0;
  }

  /// Rows from `first` to `last`, both included; what is no row is passed over. Each 64 rows cost one step.
  void set(std::size_t first, std::size_t last, bool isTicked) {
    if (rows_ == 0 || first >= rows_ || last < first) return;
    if (last >= rows_) last = rows_ - 1;
    for (std::size_t word = first / kBits; word <= last / kBits; ++word) {
      std::uint64_t mask = ~std::uint64_t{0};
      if (word == first / kBits) mask &= ~std::uint64_t{0} << (first % kBits);
      if (word == last / kBits) mask &= ~std::uint64_t{0} >> (kBits - 1 - last % kBits);
      count_ -= static_cast<std::size_t>(std::popcount(words_[word]));
      words_[word] = isTicked ? words_[word] | mask : words_[word] & ~mask;
      count_ += static_cast<std::size_t>(std::popcount(words_[word]));
    }
  }

  /// Calls `visit` with every ticked row, ascending.
  template <class Visit>
  void forEach(const Visit& visit) const {
    for (std::size_t word = 0; word < words_.size(); ++word) {
      for (std::uint64_t bits = words_[word]; bits != 0; bits &= bits - 1) {
        visit(word * kBits + static_cast<std::size_t>(std::countr_zero(bits)));
      }
    }
  }

 private:
  static constexpr std::size_t kBits = 64;

  std::size_t rows_;
  std::size_t count_ = 0;
  std::vector<std::uint64_t> words_;
};

}  // namespace chatsum::desktop
