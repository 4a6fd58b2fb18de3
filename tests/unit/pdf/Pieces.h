// Shapes short texts for tests that have no text engine: one piece a text, with HarfBuzz straight from the face.
#pragma once

#include <deque>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "platform/system/text/TextLayout.h"

namespace chatsum::platform::system {

/// A face of a file that the machine must have.
[[nodiscard]] std::unique_ptr<const FontFace> openFace(const std::string& path, unsigned number = 0);

namespace fonts {
inline const std::string kDejaVu = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
inline const std::string kDejaVuBold = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";
inline const std::string kNoto = "/usr/share/fonts/truetype/noto/";
inline const std::string kEmoji = kNoto + "NotoColorEmoji.ttf";
inline const std::string kCjk = "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc";
inline const std::string kNimbus = "/usr/share/fonts/opentype/urw-base35/NimbusSans-Regular.otf";
}  // namespace fonts

/// Makes pieces and layouts of them, and keeps both.
class Pieces {
 public:
  /// Numbers pieces from there on; others are the same.
  explicit Pieces(std::uint32_t firstNumber = 0) : next_(firstNumber) {}

  enum class Direction { kLeftToRight, kRightToLeft };
  const Piece& shape(const FontFace& face, const std::string& text, Direction direction = Direction::kLeftToRight);

  /// Several pieces of one line with that many spaces between them.
  TextLayout line(std::initializer_list<const Piece*> pieces, double fontSize, std::uint32_t spaces = 1);
  /// One line for each word.
  TextLayout lines(std::initializer_list<const Piece*> pieces, double fontSize, float lineHeight);
  /// The words of a text, which spaces part, on one line.
  TextLayout words(const FontFace& face, const std::string& text, double fontSize);

 private:
  struct Kept {
    std::string text;
    std::vector<Glyph> glyphs;
    Piece piece;
  };
  struct KeptLayout {
    std::vector<TextLine> lines;
    std::vector<PlacedPiece> pieces;
  };
  TextLayout layout(KeptLayout made, double fontSize);

  std::uint32_t next_;
  std::deque<Kept> pieces_;
  std::deque<KeptLayout> layouts_;
};

}  // namespace chatsum::platform::system
