#include "platform/system/pdf/PieceWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <string>

#include "platform/foundation/Utf8.h"
#include "platform/system/pdf/PdfSyntax.h"
#include "platform/system/text/CharacterTraits.h"

namespace chatsum::platform::system {
namespace {

std::vector<std::string_view> charactersOf(std::string_view text) {
  std::vector<std::string_view> characters;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    (void)utf8::next(text, at);
    characters.push_back(text.substr(begin, at - begin));
  }
  return characters;
}

char32_t codePointOf(std::string_view character) {
  std::size_t at = 0;
  return utf8::next(character, at);
}

bool showsNothing(std::string_view character) { return isIgnorable(codePointOf(character)); }

/// Lengths here are thousandths of the font size, as "TJ" counts them.
class PieceWriter {
 public:
  PieceWriter(const Piece& piece, double size, PdfFonts& fonts)
      : piece_(piece), face_(*piece.face), size_(size), fonts_(fonts) {
    text_.piece = &piece;
  }

  PieceText write() {
    SimpleFont* simple = piece_.isAscii ? fonts_.simple(face_) : nullptr;
    if (piece_.glyphs.empty()) {
      text_.firstFont = text_.lastFont = fonts_.forSpaces(face_).number();
    } else if (simple && piece_.text.size() == piece_.glyphs.size()) {
      writeAscii(*simple);
    } else {
      writeClusters();
    }
    return std::move(text_);
  }

 private:
  struct PlacedGlyph {
    const Glyph* glyph;
    double place;  ///< of its origin, from the piece's begin
  };

  void writeAscii(SimpleFont& font) {
    text_.firstFont = text_.lastFont = font.number();
    for (std::size_t i = 0; i < piece_.glyphs.size(); ++i) {
      const char c = piece_.text[i];
      moveTo(wanted_);
      font.use(c);
      font.appendCode(text_.bytes, static_cast<std::uint16_t>(c));
      pen_ += font.widthOf(c) / 100.0;
      wanted_ += thousandths(piece_.glyphs[i].advance);
    }
    moveTo(wanted_);
  }

  void writeClusters() {
    findClusterBegins();
    const std::span<const Glyph> glyphs = piece_.glyphs;
    for (std::size_t begin = 0, end = 0; begin < glyphs.size(); begin = end) {
      end = clusterEnd(begin);
      writeCluster(glyphs.subspan(begin, end - begin), clusterText(glyphs[begin].cluster));
    }
    if (std::abs(wanted_ - pen_) >= kLeastMove) {
      enterString();
      moveTo(wanted_);
    }
    text_.endsInString = isInString_;
    if (dependsOnSize_) text_.size = size_;
  }

  void writeCluster(std::span<const Glyph> glyphs, std::string_view text) {
    std::vector<PlacedGlyph> placed;
    for (const Glyph& glyph : glyphs) {
      placed.push_back({&glyph, wanted_ + thousandths(glyph.xOffset)});
      wanted_ += thousandths(glyph.advance);
    }
    if (piece_.isRightToLeft && writeFromTheRight(placed, text)) return;
    const bool isSpelledOut = !saysItself(placed, text);
    if (isSpelledOut) {
      lendMeanings(placed, text);
      beginSpelling(text);
    }
    for (const PlacedGlyph& one : placed) writeGlyph(one);
    if (rise_ != 0) setRise(0);
    if (isSpelledOut) endSpelling();
  }

  /// A cluster that runs from right to left. Readers turn such a line around code by code, so each code stands for one
  /// character, and they come from the last character to the first: marks before their letter. A glyph of several
  /// characters, a ligature, stands for the last one that shows something; the others stand beside it unseen. False
  /// when that cannot be done.
  bool writeFromTheRight(std::span<const PlacedGlyph> placed, std::string_view text) {
    const std::vector<std::string_view> characters = charactersOf(text);
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::vector<std::size_t> glyphOf(characters.size(), kNone), left(characters.size());
    std::iota(left.begin(), left.end(), std::size_t{0});
    std::vector<std::size_t> others;  // glyphs, the letter's first
    for (std::size_t i = placed.size(); i-- > 0;) {
      const auto own = std::find_if(left.begin(), left.end(), [&](std::size_t character) {
        return isOwn(*placed[i].glyph, characters[character]) || alreadyMeans(*placed[i].glyph, characters[character]);
      });
      if (own == left.end()) {
        others.push_back(i);
      } else {
        glyphOf[*own] = i;
        left.erase(own);
      }
    }
    if (others.size() > left.size()) return false;
    // The other glyphs stand for what is left, in its order: a letter for all up to a mark, the last one for the rest.
    std::size_t tooMany = left.size() - others.size();
    auto next = left.begin();
    for (std::size_t i = 0; i < others.size(); ++i) {
      std::size_t seen = *next++;
      for (; tooMany > 0 && (i + 1 == others.size() || !joinsBefore(codePointOf(characters[*next]))); --tooMany) {
        const std::size_t more = *next++;
        if (!showsNothing(characters[more]) || showsNothing(characters[seen])) seen = more;
      }
      glyphOf[seen] = others[i];
    }
    for (std::size_t i = 0; i < characters.size(); ++i) {
      if (glyphOf[i] == kNone && face_.glyphFor(codePointOf(characters[i])) == 0) return false;
    }
    for (std::size_t i = characters.size(); i-- > 0;) {
      if (glyphOf[i] == kNone) {
        writeUnseen(characters[i]);
      } else {
        writeMeaning(placed[glyphOf[i]], characters[i]);
      }
    }
    return true;
  }

  void writeMeaning(const PlacedGlyph& placed, std::string_view text) {
    const bool isSpelledOut = !means(*placed.glyph, text);
    if (isSpelledOut) beginSpelling(text);
    writeGlyph(placed);
    if (rise_ != 0) setRise(0);
    if (isSpelledOut) endSpelling();
  }

  /// A hundredth as wide as it is, because some readers pass over what has no width.
  void writeUnseen(std::string_view character) {
    const Glyph unseen{face_.glyphFor(codePointOf(character)), 0, 0, 0, 0};
    const GlyphCode code = fonts_.glyph(face_, unseen.id);
    const bool isSpelledOut = !means(unseen, character);
    if (isSpelledOut) beginSpelling(character);
    useFont(code.font->number());
    beginOperator();
    text_.bytes += "3 Tr 1 Tz(";
    code.font->appendCode(text_.bytes, code.code);
    text_.bytes += ")Tj 0 Tr 100 Tz\n";
    pen_ += code.width / 10000.0;
    if (isSpelledOut) endSpelling();
  }

  /// What follows stands for that text, whatever its codes stand for (ISO 32000-1, 14.9.4).
  void beginSpelling(std::string_view text) {
    leaveString();
    text_.bytes += "/Span<</ActualText" + pdf::textString(text) + ">>BDC\n";
  }

  void endSpelling() {
    leaveString();
    text_.bytes += "EMC\n";
  }

  void writeGlyph(const PlacedGlyph& placed) {
    const GlyphCode code = fonts_.glyph(face_, placed.glyph->id);
    useFont(code.font->number());
    const std::int64_t rise = pdf::hundredths(placed.glyph->yOffset * size_ / face_.unitsPerEm());
    if (rise != rise_) setRise(rise);
    enterString();
    moveTo(placed.place);
    code.font->appendCode(text_.bytes, code.code);
    pen_ += code.width / 100.0;
  }

  /// Whether the meanings of the glyphs' codes, one after the other, are the text. New codes get theirs here.
  bool saysItself(std::span<const PlacedGlyph> glyphs, std::string_view text) {
    if (glyphs.size() == 1) {
      learnOwn(*glyphs[0].glyph, text);
      return means(*glyphs[0].glyph, text);
    }
    // Where marks are moved, some readers part the word.
    const auto isMoved = [](const PlacedGlyph& one) { return one.glyph->xOffset != 0 || one.glyph->yOffset != 0; };
    if (std::any_of(glyphs.begin(), glyphs.end(), isMoved)) return false;
    // A letter with marks: each glyph is one character's own, in the order of the text.
    std::vector<std::string_view> characters;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t begin = at;
      const char32_t c = utf8::next(text, at);
      // Some readers join a letter with these by themselves, and then part the word behind it.
      const bool isJoined = c >= 0x0300 && c <= 0x036F;
      if (isJoined || characters.size() == glyphs.size()) return false;
      const Glyph& glyph = *glyphs[characters.size()].glyph;
      characters.push_back(text.substr(begin, at - begin));
      if (face_.glyphFor(c) != glyph.id && !alreadyMeans(glyph, characters.back())) return false;
    }
    bool all = characters.size() == glyphs.size();
    for (std::size_t i = 0; i < glyphs.size() && all; ++i) all = means(*glyphs[i].glyph, characters[i]);
    return all;
  }

  /// A glyph that is the face's own of a character means that alone, also where something unseen stands beside it: or
  /// it would mean both in the rest of the document.
  void learnOwn(const Glyph& glyph, std::string_view text) {
    const std::vector<std::string_view> characters = charactersOf(text);
    auto own = std::find_if(characters.begin(), characters.end(), [&](auto one) { return isOwn(glyph, one); });
    // In another form it is the only one that shows something.
    if (own == characters.end() && std::count_if(characters.begin(), characters.end(), showsNothing) + 1 ==
                                       static_cast<std::ptrdiff_t>(characters.size())) {
      own = std::find_if_not(characters.begin(), characters.end(), showsNothing);
    }
    if (own != characters.end()) (void)means(glyph, *own);
  }

  [[nodiscard]] bool isOwn(const Glyph& glyph, std::string_view character) const {
    return glyph.id != 0 && face_.glyphFor(codePointOf(character)) == glyph.id;
  }

  /// For readers that know nothing of spelling out: codes of a cluster that have no meaning yet get what fits best.
  void lendMeanings(std::span<const PlacedGlyph> glyphs, std::string_view text) {
    std::string rest;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t begin = at;
      const std::uint32_t own = face_.glyphFor(utf8::next(text, at));
      const auto found =
          std::find_if(glyphs.begin(), glyphs.end(), [own](const PlacedGlyph& g) { return g.glyph->id == own; });
      if (own == 0 || found == glyphs.end() || !means(*found->glyph, text.substr(begin, at - begin))) {
        rest += text.substr(begin, at - begin);
      }
    }
    for (const PlacedGlyph& one : glyphs) {
      if (!rest.empty() && means(*one.glyph, rest)) rest.clear();
    }
  }

  bool means(const Glyph& glyph, std::string_view text) {
    const GlyphCode code = fonts_.glyph(face_, glyph.id);
    return code.font->texts().means(code.code, text);
  }

  bool alreadyMeans(const Glyph& glyph, std::string_view text) {
    const GlyphCode code = fonts_.glyph(face_, glyph.id);
    return code.font->texts().alreadyMeans(code.code, text);
  }

  void findClusterBegins() {
    for (const Glyph& glyph : piece_.glyphs) begins_.push_back(glyph.cluster);
    std::sort(begins_.begin(), begins_.end());
    begins_.erase(std::unique(begins_.begin(), begins_.end()), begins_.end());
  }

  /// Behind the last glyph of the cluster that begins with that glyph.
  std::size_t clusterEnd(std::size_t begin) const {
    std::size_t end = begin + 1;
    while (end < piece_.glyphs.size() && piece_.glyphs[end].cluster == piece_.glyphs[begin].cluster) ++end;
    return end;
  }

  /// A cluster goes on until the next begins; the first holds what stands before it, too.
  std::string_view clusterText(std::uint32_t cluster) const {
    const auto next = std::upper_bound(begins_.begin(), begins_.end(), cluster);
    const std::size_t begin = cluster == begins_.front() ? 0 : std::min<std::size_t>(cluster, piece_.text.size());
    const std::size_t end =
        next == begins_.end() ? piece_.text.size() : std::min<std::size_t>(*next, piece_.text.size());
    return piece_.text.substr(begin, end - begin);
  }

  void useFont(std::uint16_t number) {
    if (!hasFont_) {
      text_.firstFont = text_.lastFont = number;
      hasFont_ = true;
    }
    if (number == text_.lastFont) return;
    leaveString();
    text_.bytes += "/F" + std::to_string(number) + " ";
    pdf::appendHundredths(text_.bytes, pdf::hundredths(size_));
    text_.bytes += " Tf\n";
    text_.lastFont = number;
    dependsOnSize_ = true;
  }

  /// For one that begins with a number, which must not touch the operator before.
  void beginOperator() {
    leaveString();
    if (text_.bytes.empty()) text_.bytes += ' ';
  }

  void setRise(std::int64_t rise) {
    beginOperator();
    pdf::appendHundredths(text_.bytes, rise);
    text_.bytes += " Ts\n";
    rise_ = rise;
    dependsOnSize_ = true;
  }

  void enterString() {
    if (isInString_) return;
    if (text_.bytes.empty()) {
      text_.beginsInString = true;
    } else {
      text_.bytes += "[(";
    }
    isInString_ = true;
  }

  void leaveString() {
    if (isInString_) {
      text_.bytes += ")]TJ\n";
      if (text_.beginsInString) text_.isAdjusted = true;
    } else if (text_.bytes.empty()) {
      text_.beginsInString = false;
    }
    isInString_ = false;
  }

  /// Inside a string: moves the pen when it stands somewhere else. What is too little for that is made up for later.
  void moveTo(double place) {
    const double way = place - pen_;
    if (std::abs(way) < kLeastMove) return;
    const std::int64_t move = std::llround(std::clamp(way, -1e6, 1e6));
    text_.bytes += ')';
    pdf::appendInteger(text_.bytes, -move);
    text_.bytes += '(';
    if (text_.beginsInString) text_.isAdjusted = true;
    pen_ += static_cast<double>(move);
  }

  [[nodiscard]] double thousandths(int units) const { return units * 1000.0 / face_.unitsPerEm(); }

  static constexpr double kLeastMove = 0.5;

  const Piece& piece_;
  const FontFace& face_;
  const double size_;
  PdfFonts& fonts_;
  PieceText text_;
  std::vector<std::uint32_t> begins_;  ///< of the clusters, ascending
  double wanted_ = 0, pen_ = 0;        ///< where the next glyph's origin belongs, and where it would come
  std::int64_t rise_ = 0;              ///< hundredths of a point
  bool hasFont_ = false, isInString_ = false, dependsOnSize_ = false;
};

}  // namespace

PieceText pieceText(const Piece& piece, double size, PdfFonts& fonts) {
  return PieceWriter(piece, size, fonts).write();
}

}  // namespace chatsum::platform::system
