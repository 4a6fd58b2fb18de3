#include "platform/system/text/PieceCutter.h"

#include <algorithm>

namespace chatsum::platform::system {

void PieceCutter::begin(const KeptPiece& piece) {
  piece_ = &piece;
  at_ = 0;
  paragraph_.assign(piece.text, *iterators_);
  advances_.assign(piece.text.size() + 1, 0);
  for (const Glyph& glyph : piece.glyphs) {
    advances_[std::min<std::size_t>(glyph.cluster, piece.text.size())] += glyph.advance;
  }
  places_.clear();
  before_.clear();
  std::int64_t sum = 0;
  std::uint32_t counted = 0;
  for (std::uint32_t unit = 0; unit <= paragraph_.size(); ++unit) {
    if (unit > 0 && unit < paragraph_.size() && !paragraph_.isClusterAt(unit)) continue;
    const std::uint32_t place = paragraph_.byteAt(unit);
    for (; counted < place; ++counted) sum += advances_[counted];
    places_.push_back(place);
    before_.push_back(sum);
  }
}

std::string_view PieceCutter::textUpTo(std::size_t end) const {
  return piece_->text.substr(places_[at_], places_[end] - places_[at_]);
}

bool PieceCutter::fits(std::size_t end, Fixed room, const FixedScale& scale) {
  const bool isWhole = at_ == 0 && end + 1 == places_.size();
  if (isWhole) return scale.of(piece_->width) <= room;
  return scale.of(shaper_->measure(piece_->style, textUpTo(end))) <= room;
}

bool PieceCutter::take(Fixed room, const FixedScale& scale, bool must, std::vector<const KeptPiece*>& parts) {
  // The widths in the whole piece say about where; kerning and joining make the part itself a little different.
  const std::size_t last = places_.size() - 1;
  std::size_t end = at_;
  while (end < last && scale.of(before_[end + 1] - before_[at_]) <= room) ++end;
  if (end > at_ && !fits(end, room, scale)) {
    do --end;
    while (end > at_ && !fits(end, room, scale));
  } else {
    while (end < last && fits(end + 1, room, scale)) ++end;
  }
  if (end == at_) {
    if (!must || isAtEnd()) return false;
    ++end;
  }
  pieces_->append(piece_->style, textUpTo(end), *shaper_, parts);
  at_ = end;
  return true;
}

}  // namespace chatsum::platform::system
