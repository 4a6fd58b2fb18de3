// Fills lines with pieces and adds them to a store of layouts, one layout at a time. One thread at a time.
//
// A line is as high as its tallest faces need: the largest ascent, and below the baseline the largest descent with its
// line gap, rounded up to a whole point. The named font's face always counts. The baseline lies the largest ascent
// below the line's top.
#pragma once

#include <unicode/ubidi.h>

#include <cstdint>
#include <vector>

#include "platform/system/text/FontLibrary.h"
#include "platform/system/text/PieceCutter.h"
#include "platform/system/text/TextLayout.h"

namespace chatsum::platform::system {

/// What a line is made of, in logical order: a piece and the spaces behind it. Without a piece spaces alone, or a tab.
struct TextUnit {
  const KeptPiece* piece = nullptr;
  std::uint32_t spaces = 0;
  std::uint8_t level = 0;  ///< of direction (UAX #9)
  bool isTab = false;
  bool mayBreak = false;  ///< a line may end behind it and its spaces
};

/// What becomes of units that do not fit on a line any more.
enum class LineRule {
  kWords,              ///< they go to the next line, from the last place where a line may end
  kCharacters,         ///< as many grapheme clusters as fit stay
  kFirstOfWords,       ///< like kWords, but there is no next line
  kFirstOfCharacters,  ///< like kCharacters, but there is no next line
  kNone,               ///< all are left out: it is only asked whether they fit
};

class LineBuilder {
 public:
  LineBuilder(PieceCache& pieces, Shaper& shaper, BreakIterators& iterators) : cutter_(pieces, shaper, iterators) {}

  /// Starts a layout. `space` is the piece of a space in the font's primary face; `size` is in points, `width` in whole
  /// points or infinite.
  void begin(const NamedFont& font, const KeptPiece& space, double size, double width, LineRule rule,
             LayoutStore& store);
  void add(const TextUnit& unit);
  /// Ends one of the text's own lines; an empty one has a height too.
  void endLine();
  /// Closes the layout.
  void finish();

  /// Whether something did not fit and whatever else is added to this line will be left out.
  [[nodiscard]] bool isDone() const { return isDone_; }

 private:
  struct Entry {
    TextUnit unit;
    Fixed gap;  // of a tab
  };

  [[nodiscard]] bool isSingle() const { return rule_ != LineRule::kWords && rule_ != LineRule::kCharacters; }
  [[nodiscard]] FixedScale scaleOf(const FontFace& face) const {
    return &face == primary_ ? primaryScale_ : FixedScale(size_, face.unitsPerEm());
  }
  void push(const TextUnit& unit, Fixed width);
  void overflow(const TextUnit& unit);
  void cut(const TextUnit& unit);
  void restart();
  /// Adds a line of the first entries.
  void emit(std::size_t count, Fixed width);
  void emitVisually(std::size_t count);
  void place(const Entry& entry, bool isLast);
  void placeSpaces(const TextUnit& unit);
  void flush();

  PieceCutter cutter_;
  std::vector<const KeptPiece*> parts_;

  // The layout.
  const FontFace* primary_ = nullptr;
  const KeptPiece* space_ = nullptr;
  LayoutStore* store_ = nullptr;
  LineRule rule_ = LineRule::kWords;
  double size_ = 0, height_ = 0;
  FixedScale primaryScale_;
  Fixed limit_ = 0, spaceWidth_ = 0, widest_ = 0;
  bool isDone_ = false;

  // The line that is being filled: where its last glyph ends, how far spaces reach beyond, and the last place where it
  // may end.
  std::vector<Entry> line_;
  Fixed end_ = 0, hanging_ = 0, endAtBreak_ = 0;
  std::size_t break_ = 0;

  // The line that is being added.
  PlacedPiece placed_;
  double gap_ = 0, ascent_ = 0, descent_ = 0;
  std::vector<UBiDiLevel> levels_;
  std::vector<std::int32_t> order_;
};

}  // namespace chatsum::platform::system
