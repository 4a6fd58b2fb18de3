#include "platform/system/text/LineBuilder.h"

#include <algorithm>
#include <cmath>

namespace chatsum::platform::system {
namespace {

constexpr Fixed kTab = static_cast<Fixed>(28 * kFixedPoint);
constexpr Fixed kNoLimit = Fixed{1} << 60;

bool isBlank(const TextUnit& unit) { return !unit.piece || unit.piece->glyphs.empty(); }

double pointsOf(Fixed length) { return static_cast<double>(length) / kFixedPoint; }

/// Upwards, but not for the last digit of a double.
double wholeAbove(double length) { return std::ceil(length - 1e-6); }

double belowBaseline(const FontFace& face) { return face.descent() + face.lineGap(); }

}  // namespace

void LineBuilder::begin(const NamedFont& font, const KeptPiece& space, double size, double width, LineRule rule,
                        LayoutStore& store) {
  primary_ = font.primary;
  space_ = &space;
  store_ = &store;
  rule_ = rule;
  size_ = size;
  primaryScale_ = FixedScale(size, primary_->unitsPerEm());
  spaceWidth_ = primaryScale_.of(space.width);
  limit_ = width * kFixedPoint < static_cast<double>(kNoLimit) ? static_cast<Fixed>(width * kFixedPoint) : kNoLimit;
  height_ = 0;
  widest_ = 0;
  isDone_ = false;
  restart();
}

void LineBuilder::restart() {
  line_.clear();
  end_ = hanging_ = endAtBreak_ = 0;
  break_ = 0;
}

void LineBuilder::add(const TextUnit& unit) {
  if (isDone_) return;
  const Fixed width = unit.piece ? scaleOf(*unit.piece->face).of(unit.piece->width) : 0;
  if (width > 0 && end_ + hanging_ + width > limit_) {
    overflow(unit);
  } else {
    push(unit, width);
  }
}

void LineBuilder::push(const TextUnit& unit, Fixed width) {
  Fixed gap = 0;
  if (unit.isTab) {
    const Fixed begin = end_ + hanging_;
    gap = (begin / kTab + 1) * kTab - begin;
    hanging_ += gap;
  } else if (!isBlank(unit)) {
    end_ += hanging_ + width;
    hanging_ = 0;
  }
  hanging_ += unit.spaces * spaceWidth_;
  line_.push_back({unit, gap});
  if (unit.mayBreak) {
    break_ = line_.size();
    endAtBreak_ = end_;
  }
}

void LineBuilder::overflow(const TextUnit& unit) {
  if (rule_ == LineRule::kNone) {
    isDone_ = true;
    return;
  }
  const bool byWords = rule_ == LineRule::kWords || rule_ == LineRule::kFirstOfWords;
  if (!byWords || break_ == 0) return cut(unit);
  emit(break_, endAtBreak_);
  isDone_ = isSingle();
  // What stands behind the break begins the next line; none of it may end a line.
  const std::vector<Entry> carried(line_.begin() + static_cast<std::ptrdiff_t>(break_), line_.end());
  restart();
  for (const Entry& entry : carried) add(entry.unit);
  add(unit);
}

void LineBuilder::cut(const TextUnit& unit) {
  const FixedScale scale = scaleOf(*unit.piece->face);
  cutter_.begin(*unit.piece);
  while (!isDone_) {
    parts_.clear();
    if (cutter_.take(limit_ - end_ - hanging_, scale, line_.empty(), parts_)) {
      for (std::size_t i = 0; i < parts_.size(); ++i) {
        TextUnit part{parts_[i], 0, unit.level, false, false};
        if (cutter_.isAtEnd() && i + 1 == parts_.size()) {
          part.spaces = unit.spaces;
          part.mayBreak = unit.mayBreak;
        }
        push(part, scale.of(parts_[i]->width));
      }
      if (cutter_.isAtEnd()) return;
    }
    emit(line_.size(), end_);
    restart();
    isDone_ = isSingle();
  }
}

void LineBuilder::endLine() {
  if (!isDone_) emit(line_.size(), end_);
  restart();
  isDone_ = false;
}

void LineBuilder::finish() { store_->addLayout({wholeAbove(pointsOf(widest_)), height_}, size_); }

void LineBuilder::emit(std::size_t count, Fixed width) {
  // Spaces at the end hang: nothing shows them.
  while (count > 0 && isBlank(line_[count - 1].unit)) --count;
  TextLine added;
  added.begin = store_->openPieces();
  placed_ = {};
  gap_ = 0;
  ascent_ = primary_->ascent() * size_ / primary_->unitsPerEm();
  descent_ = belowBaseline(*primary_) * size_ / primary_->unitsPerEm();

  const bool isMixed = std::any_of(line_.begin(), line_.begin() + static_cast<std::ptrdiff_t>(count),
                                   [](const Entry& entry) { return entry.unit.level != 0; });
  if (isMixed) {
    emitVisually(count);
  } else {
    for (std::size_t i = 0; i < count; ++i) place(line_[i], i + 1 == count);
  }
  flush();

  added.end = store_->openPieces();
  added.width = static_cast<float>(pointsOf(width));
  added.height = static_cast<float>(wholeAbove(ascent_ + descent_));
  added.baseline = static_cast<float>(ascent_);
  store_->addLine(added);
  height_ += added.height;
  widest_ = std::max(widest_, width);
}

void LineBuilder::emitVisually(std::size_t count) {
  levels_.clear();
  for (std::size_t i = 0; i < count; ++i) levels_.push_back(line_[i].unit.level);
  order_.resize(count);
  ubidi_reorderVisual(levels_.data(), static_cast<int>(count), order_.data());
  for (const std::int32_t logical : order_) {
    const auto at = static_cast<std::size_t>(logical);
    place(line_[at], at + 1 == count);
  }
}

void LineBuilder::place(const Entry& entry, bool isLast) {
  const TextUnit& unit = entry.unit;
  if (!isBlank(unit)) {
    const FontFace& face = *unit.piece->face;
    flush();
    placed_ = {unit.piece, 0, static_cast<float>(gap_)};
    gap_ = 0;
    if (&face != primary_) {
      ascent_ = std::max(ascent_, face.ascent() * size_ / face.unitsPerEm());
      descent_ = std::max(descent_, belowBaseline(face) * size_ / face.unitsPerEm());
    }
  }
  if (unit.spaces > 0 && !isLast) placeSpaces(unit);
  gap_ += pointsOf(entry.gap);
}

void LineBuilder::placeSpaces(const TextUnit& unit) {
  if (placed_.piece && gap_ == 0) {
    const FontFace& face = *placed_.piece->face;
    // Between words that run to the left they are those of the words' face, as wide as others: readers turn such a line
    // around from one change of font to the next, and would leave the words in the wrong order.
    const bool areOfLine = (unit.level & 1U) != 0 && placed_.piece->isRightToLeft && face.asciiGlyph(' ') != 0;
    if (areOfLine && &face != primary_) {
      gap_ = pointsOf(spaceWidth_ - scaleOf(face).of(face.advanceOf(face.asciiGlyph(' ')))) * unit.spaces;
    }
    // Otherwise spaces behind the piece before, if they are its own.
    if (areOfLine || (&face == primary_ && !placed_.piece->isRightToLeft)) {
      placed_.spaces += unit.spaces;
      return;
    }
  }
  flush();
  placed_ = {space_, unit.spaces - 1, static_cast<float>(gap_)};
  gap_ = 0;
}

void LineBuilder::flush() {
  if (placed_.piece) store_->addPiece(placed_);
  placed_ = {};
}

}  // namespace chatsum::platform::system
