#include "platform/system/pdf/PieceWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

#include "platform/foundation/Utf8.h"
#include "platform/system/pdf/PdfSyntax.h"

namespace chatsum::platform::system {
namespace {

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
    // Marks follow their letter, as readers expect: also where they stand before it, from right to left.
    std::vector<PlacedGlyph> placed;
    for (const Glyph& glyph : glyphs) {
      placed.push_back({&glyph, wanted_ + thousandths(glyph.xOffset)});
      wanted_ += thousandths(glyph.advance);
    }
    if (piece_.isRightToLeft) {
      if (placed.size() == 1 && writeLigature(placed[0], text)) return;
      std::reverse(placed.begin(), placed.end());
    }
    const bool isSpelledOut = !saysItself(placed, text);
    if (isSpelledOut) {
      lendMeanings(placed, text);
      beginSpelling(text);
    }
    for (const PlacedGlyph& one : placed) writeGlyph(one);
    if (rise_ != 0) setRise(0);
    if (isSpelledOut) endSpelling();
  }

  /// A ligature that runs from right to left: readers turn such a line around code by code, so several characters of
  /// one code would come out in the wrong order. The glyph stands for the last one, the others follow it unseen and
  /// without width. False when it is none, or the face has no glyph for one of them.
  bool writeLigature(const PlacedGlyph& placed, std::string_view text) {
    std::vector<std::string_view> characters;
    std::vector<std::uint32_t> own;  // their glyphs
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t begin = at;
      own.push_back(face_.glyphFor(utf8::next(text, at)));
      characters.push_back(text.substr(begin, at - begin));
      if (own.back() == 0) return false;
    }
    if (characters.size() < 2) return false;
    const bool isSpelledOut = !means(*placed.glyph, characters.back());
    if (isSpelledOut) beginSpelling(characters.back());
    writeGlyph(placed);
    if (rise_ != 0) setRise(0);
    if (isSpelledOut) endSpelling();

    for (std::size_t i = characters.size() - 1; i-- > 0;) {
      const Glyph unseen{own[i], placed.glyph->cluster, 0, 0, 0};
      const GlyphCode code = fonts_.glyph(face_, unseen.id);
      const bool isOther = !means(unseen, characters[i]);
      if (isOther) beginSpelling(characters[i]);
      useFont(code.font->number());
      leaveString();
      text_.bytes += "3 Tr 1 Tz(";  // unseen; a hundredth as wide, because some readers pass over what has no width
      code.font->appendCode(text_.bytes, code.code);
      text_.bytes += ")Tj 0 Tr 100 Tz\n";
      pen_ += code.width / 10000.0;
      if (isOther) endSpelling();
    }
    return true;
  }

  /// What follows stands for that text, whatever its codes stand for (ISO 32000-1, 14.9.4).
  void beginSpelling(std::string_view text) {
    leaveString();
    text_.bytes += "/Span<</ActualText(\xFE\xFF";
    pdf::appendLiteral(text_.bytes, pdf::utf16(text));
    text_.bytes += ")>>BDC\n";
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
    if (glyphs.size() == 1) return means(*glyphs[0].glyph, text);
    // Where marks are moved, some readers part the word. From right to left spelling out does not help them.
    const auto isMoved = [](const PlacedGlyph& one) { return one.glyph->xOffset != 0 || one.glyph->yOffset != 0; };
    if (!piece_.isRightToLeft && std::any_of(glyphs.begin(), glyphs.end(), isMoved)) return false;
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

  void setRise(std::int64_t rise) {
    leaveString();
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
