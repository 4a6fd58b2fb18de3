// Text that has been shaped, broken into lines and put in visual order: what measuring answers and drawing shows.
// Immutable once made, any thread. Pieces live as long as the text engine that shaped them, layouts as long as the
// store they stand in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/foundation/Geometry.h"
#include "platform/system/text/FontFace.h"

namespace chatsum::platform::system {

/// One glyph of a piece; lengths in font units, y growing upwards.
struct Glyph {
  std::uint32_t id = 0;
  std::uint32_t cluster = 0;  ///< where its characters begin in the piece's text, bytes
  std::int32_t advance = 0;
  std::int32_t xOffset = 0, yOffset = 0;
};

/// Characters that were shaped together: one face, one direction, no line break inside. Each distinct one exists once.
struct Piece {
  const FontFace* face = nullptr;
  std::uint32_t number = 0;  ///< counts the pieces of an engine from 0, in an order that may differ from run to run
  bool isRightToLeft = false;
  /// Every glyph is the face's own glyph of one printable ASCII character of the text, in order; kerning may show in
  /// the advances, offsets are 0.
  bool isAscii = false;
  bool lacksGlyphs = false;       ///< no font has a character of it; a box stands there (glyph 0)
  std::int32_t width = 0;         ///< sum of the advances
  std::string_view text;          ///< UTF-8, in logical order
  std::span<const Glyph> glyphs;  ///< from left to right; a cluster's glyphs stand together
};

/// A piece on a line, left to right. `gap` (points) stands before it, for tabs. `spaces` spaces of the piece's face,
/// each as wide as its glyph, follow it.
struct PlacedPiece {
  const Piece* piece = nullptr;
  std::uint32_t spaces = 0;
  float gap = 0;
};

struct TextLine {
  std::uint32_t begin = 0, end = 0;  ///< its pieces
  float width = 0;                   ///< points, without spaces at its end
  float height = 0;                  ///< points, to the next line's top
  float baseline = 0;                ///< points below the line's own top
};

/// One laid-out text. `size` is whole points upwards, {0, 0} for an empty text.
struct TextLayout {
  Size size;
  double fontSize = 0;
  std::span<const TextLine> lines;
  std::span<const PlacedPiece> pieces;  ///< of all lines
};

/// Holds layouts one behind the other, without an allocation for each. One thread at a time.
class LayoutStore {
 public:
  [[nodiscard]] std::size_t count() const { return layouts_.size(); }
  [[nodiscard]] TextLayout operator[](std::size_t place) const {
    const Entry& entry = layouts_[place];
    // Places of a line's pieces count from the layout's first.
    return {entry.size, entry.fontSize, std::span(lines_).subspan(entry.firstLine, entry.lines),
            std::span(pieces_).subspan(entry.firstPiece, entry.pieces)};
  }
  void clear() {
    layouts_.clear();
    lines_.clear();
    pieces_.clear();
  }

  // For the engine that fills it: lines and pieces first, then the layout that they make.
  void addPiece(const PlacedPiece& piece) { pieces_.push_back(piece); }
  void addLine(const TextLine& line) { lines_.push_back(line); }
  [[nodiscard]] std::uint32_t openPieces() const { return static_cast<std::uint32_t>(pieces_.size() - closedPieces()); }
  void addLayout(Size size, double fontSize) {
    const std::size_t firstLine = closedLines(), firstPiece = closedPieces();
    layouts_.push_back({size, fontSize, firstLine, lines_.size() - firstLine, firstPiece, pieces_.size() - firstPiece});
  }

 private:
  struct Entry {
    Size size;
    double fontSize;
    std::size_t firstLine, lines, firstPiece, pieces;
  };
  [[nodiscard]] std::size_t closedLines() const {
    return layouts_.empty() ? 0 : layouts_.back().firstLine + layouts_.back().lines;
  }
  [[nodiscard]] std::size_t closedPieces() const {
    return layouts_.empty() ? 0 : layouts_.back().firstPiece + layouts_.back().pieces;
  }

  std::vector<Entry> layouts_;
  std::vector<TextLine> lines_;
  std::vector<PlacedPiece> pieces_;
};

}  // namespace chatsum::platform::system
