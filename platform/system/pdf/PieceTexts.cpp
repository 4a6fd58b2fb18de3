#include "platform/system/pdf/PieceTexts.h"

#include <algorithm>

#include "platform/system/pdf/PieceWriter.h"

namespace chatsum::platform::system {

const PieceText& PieceTexts::make(const Piece& piece, double size) {
  if (piece.number >= known_.size()) known_.resize(std::size_t{piece.number} + 1);
  PieceText& text = known_[piece.number];
  text = pieceText(piece, size, fonts_);
  const bool isPlain = text.beginsInString && text.endsInString && !text.isAdjusted;
  text.isShort = isPlain && text.bytes.size() <= text.head.size();
  if (text.isShort) std::copy(text.bytes.begin(), text.bytes.end(), text.head.begin());
  return text;
}

}  // namespace chatsum::platform::system
