// Turns text into units for lines: finds faces, directions and the places where lines may end, and shapes what has not
// been shaped before. One thread at a time; several share the tables.
//
// Words between spaces are independent of each other but for few neighbours, so they are looked up one by one; ICU sees
// each distinct word once. Directions are found for a whole line before. Text with tabs, and marks that stand on
// spaces, goes through ICU as a whole, and its pieces are looked up.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system/text/BreakIterators.h"
#include "platform/system/text/Itemizer.h"
#include "platform/system/text/LineBuilder.h"
#include "platform/system/text/Paragraph.h"
#include "platform/system/text/PieceCache.h"
#include "platform/system/text/Shaper.h"
#include "platform/system/text/TextSurvey.h"
#include "platform/system/text/Words.h"

namespace chatsum::platform::system {

class Composer {
 public:
  Composer(FontLibrary& fonts, PieceCache& pieces, WordTable& words)
      : pieces_(&pieces), words_(&words), itemizer_(fonts) {}

  /// Starts a text; the bytes must stay. The font must have a primary face.
  void begin(std::string_view text, const NamedFont& font);
  /// Adds one of the text's lines to a builder: clean text without newlines, of which `survey` tells the truth.
  void compose(std::string_view line, const TextSurvey& survey, LineBuilder& lines);

  /// The piece of a space in the font's primary face.
  [[nodiscard]] const KeptPiece& spaceOf(const NamedFont& font);
  [[nodiscard]] Shaper& shaper() { return shaper_; }
  [[nodiscard]] BreakIterators& iterators() { return iterators_; }

 private:
  void composeWords(std::string_view line, bool isBidirectional);
  void composeWhole(std::string_view text, bool isBidirectional);
  void addWord(std::string_view text, std::uint8_t level);
  /// A word that is not kept: a long one, or one with several directions. It begins at that place of `directions_`.
  void addUniqueWord(std::string_view text, std::uint32_t place, bool isBidirectional);
  void addSpaces(std::uint32_t count, std::uint32_t place, bool isBidirectional);
  void addItem(const TextItem& item);
  /// Units reach the lines one behind, because what follows decides whether a line may end behind them.
  void add(const TextUnit& unit);
  void flush();

  /// A word of one direction behind the text `before`, which is empty when it does not matter. nullptr when it is not
  /// kept: then it is in `parts_` and `mayBreakBefore_`.
  const Word* wordOf(std::string_view text, bool isRightToLeft, std::string_view before);
  void makeWord(std::string_view text, bool isRightToLeft, std::string_view before);
  void makeAsciiWord(std::string_view text);
  /// What has to be known of the word before, to tell whether a line may end between it and the next; empty when the
  /// edges say that it may.
  [[nodiscard]] std::string_view contextFor(WordEdge first) const;
  /// Puts the text before, if any, a space and a word into `around_`. Answers the byte where the word begins.
  std::size_t putAround(std::string_view before, std::string_view word);
  HanLanguage han();

  PieceCache* pieces_;
  WordTable* words_;
  RecentWords recent_;
  BreakIterators iterators_;
  Shaper shaper_;
  Itemizer itemizer_;
  Paragraph paragraph_, directions_;

  std::string_view text_;
  const NamedFont* font_ = nullptr;
  std::optional<HanLanguage> han_;
  bool lineMayBeHan_ = false;
  LineBuilder* lines_ = nullptr;
  TextUnit pending_;
  bool hasPending_ = false;

  // The word before.
  std::string_view before_;
  WordEdge last_ = WordEdge::kPlain;

  std::vector<const KeptPiece*> found_;
  std::vector<WordPart> parts_;
  bool mayBreakBefore_ = true;
  std::string around_, key_;
};

}  // namespace chatsum::platform::system
