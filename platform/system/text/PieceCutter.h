// Cuts a piece that is wider than its line between grapheme clusters. One thread at a time.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/system/text/BreakIterators.h"
#include "platform/system/text/Paragraph.h"
#include "platform/system/text/PieceCache.h"
#include "platform/system/text/Shaper.h"

namespace chatsum::platform::system {

/// Lengths of lines are counted in 1/65536 point: sums are exact, whatever the order.
using Fixed = std::int64_t;
inline constexpr double kFixedPoint = 65536;

/// How wide font units are at a size.
class FixedScale {
 public:
  FixedScale() = default;
  FixedScale(double size, int unitsPerEm) : scale_(size * kFixedPoint / unitsPerEm) {}
  [[nodiscard]] Fixed of(std::int64_t units) const {
    return static_cast<Fixed>(static_cast<double>(units) * scale_ + 0.5);
  }

 private:
  double scale_ = 0;
};

class PieceCutter {
 public:
  PieceCutter(PieceCache& pieces, Shaper& shaper, BreakIterators& iterators)
      : pieces_(&pieces), shaper_(&shaper), iterators_(&iterators) {}

  /// Starts with a piece.
  void begin(const KeptPiece& piece);
  [[nodiscard]] bool isAtEnd() const { return at_ + 1 >= places_.size(); }
  /// Takes as much as is no wider than `room`, one cluster at least when it `must` take something, and appends its
  /// pieces. False when nothing was taken. How wide a part is counts when it is shaped alone.
  bool take(Fixed room, const FixedScale& scale, bool must, std::vector<const KeptPiece*>& parts);

 private:
  [[nodiscard]] std::string_view textUpTo(std::size_t end) const;
  [[nodiscard]] bool fits(std::size_t end, Fixed room, const FixedScale& scale);

  PieceCache* pieces_;
  Shaper* shaper_;
  BreakIterators* iterators_;
  const KeptPiece* piece_ = nullptr;
  Paragraph paragraph_;
  std::vector<std::uint32_t> places_;  // where clusters begin, bytes, and the end
  std::vector<std::int64_t> before_;   // advances before each of them, in the whole piece
  std::vector<std::int64_t> advances_;
  std::size_t at_ = 0;
};

}  // namespace chatsum::platform::system
