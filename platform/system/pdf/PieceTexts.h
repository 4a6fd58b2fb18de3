// Pieces of text as what shows them in a page's content (ISO 32000-1, 9.4.3), made once for each piece and then only
// copied. One thread at a time.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/system/pdf/PdfFonts.h"
#include "platform/system/text/TextLayout.h"

namespace chatsum::platform::system {

/// The bytes of a piece. They stand inside a literal string, which they may leave to move ("…)-20(…") or to do more
/// ("…)]TJ …[(…"); then the string must be one of an array, "[(…)]TJ".
struct PieceText {
  const Piece* piece = nullptr;
  std::string bytes;
  double size = 0;  ///< the font size the bytes hold for; 0: any
  std::uint16_t firstFont = 0, lastFont = 0;
  bool isAdjusted = false;  ///< the string they begin in must be one of an array
  bool beginsInString = true, endsInString = true;
  bool isShort = false;  ///< nothing but a few bytes of a string, which stand in `head`, too
  std::array<char, 16> head{};
};

class PieceTexts {
 public:
  explicit PieceTexts(PdfFonts& fonts) : fonts_(fonts) {}

  /// Holds until the next call. The piece must live as long as this.
  [[nodiscard]] const PieceText& of(const Piece& piece, double size) {
    if (piece.number < known_.size()) {
      const PieceText& text = known_[piece.number];
      if (text.piece == &piece && (text.size == 0 || text.size == size)) return text;
    }
    return make(piece, size);
  }

 private:
  const PieceText& make(const Piece& piece, double size);

  PdfFonts& fonts_;
  std::vector<PieceText> known_;  ///< by the piece's number
};

}  // namespace chatsum::platform::system
