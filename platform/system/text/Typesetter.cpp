#include "platform/system/text/Typesetter.h"

#include <algorithm>
#include <cmath>

namespace chatsum::platform::system {
namespace {

constexpr double kLargestSize = 10'000;
constexpr std::string_view kEllipsis = "\xE2\x80\xA6";
/// No more than this of a line's beginning and of its end is considered where something is left out. Bytes.
constexpr std::size_t kLongestShown = 32 * 1024;
/// More fonts by name than any program uses.
constexpr std::size_t kMostKnown = 64;

bool truncates(LineBreakMode mode) {
  return mode == LineBreakMode::kHeadTruncation || mode == LineBreakMode::kMiddleTruncation ||
         mode == LineBreakMode::kTailTruncation;
}

LineRule ruleFor(LineBreakMode mode, bool onOneLine) {
  switch (mode) {
    case LineBreakMode::kWordWrap:
      return onOneLine ? LineRule::kFirstOfWords : LineRule::kWords;
    case LineBreakMode::kCharacterWrap:
      return onOneLine ? LineRule::kFirstOfCharacters : LineRule::kCharacters;
    default:
      return LineRule::kFirstOfCharacters;
  }
}

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

}  // namespace

Typesetter::Typesetter(FontLibrary& fonts, PieceCache& pieces, WordTable& words)
    : fonts_(&fonts),
      composer_(fonts, pieces, words),
      lines_(pieces, composer_.shaper(), composer_.iterators()),
      trial_(pieces, composer_.shaper(), composer_.iterators()) {}

const Typesetter::Font& Typesetter::fontNamed(const std::string& name) {
  for (const Font& font : known_) {
    if (font.name == name) return font;
  }
  const NamedFont& font = fonts_->fontNamed(name);
  if (known_.size() == kMostKnown) known_.clear();
  known_.push_back({name, &font, font.primary ? &composer_.spaceOf(font) : nullptr});
  return known_.back();
}

TextSurvey Typesetter::surveyOf(std::string_view text) const {
  TextSurvey found = survey(text);
  if (avoidsWords_) found.isPlain = false;
  return found;
}

void Typesetter::layOut(std::string_view text, const UIFont& font, double width, LineBreakMode mode, bool onOneLine,
                        LayoutStore& store) {
  font_ = &fontNamed(font.name);
  size_ = font.size > 0 ? std::min(font.size, kLargestSize) : 0;
  // Whole points, as sizes are: the same lines come out again within the size they had. Not a number is no width.
  width_ = width > 0 ? std::floor(width) : 0;
  TextSurvey survey = surveyOf(text);
  if (!survey.isClean || (onOneLine && survey.hasNewlines)) {
    clean_.clear();
    appendClean(clean_, text, onOneLine);
    text = clean_;
    survey = surveyOf(text);
  }
  if (text.empty() || !font_->space || size_ <= 0) return store.addLayout({}, size_);

  composer_.begin(text, *font_->font);
  lines_.begin(*font_->font, *font_->space, size_, width_, ruleFor(mode, onOneLine), store);
  while (!text.empty()) {
    const std::string_view line = survey.hasNewlines ? takeLine(text) : std::exchange(text, {});
    if (truncates(mode) && !fits(line, survey)) {
      addTruncated(line, mode);
    } else {
      addLine(line, survey);
    }
  }
  lines_.finish();
}

void Typesetter::addLine(std::string_view line, const TextSurvey& survey) {
  composer_.compose(line, survey, lines_);
  lines_.endLine();
}

bool Typesetter::fits(std::string_view line, const TextSurvey& survey) {
  trialStore_.clear();
  trial_.begin(*font_->font, *font_->space, size_, width_, LineRule::kNone, trialStore_);
  composer_.compose(line, survey, trial_);
  return !trial_.isDone();
}

std::string_view Typesetter::shortened(std::string_view line, std::size_t first, std::size_t last) {
  std::string_view head = line.substr(0, places_[first]);
  std::string_view tail = line.substr(places_[places_.size() - 1 - last]);
  while (head.ends_with(' ')) head.remove_suffix(1);
  while (tail.starts_with(' ')) tail.remove_prefix(1);
  shortened_.assign(head);
  shortened_ += kEllipsis;
  shortened_ += tail;
  return shortened_;
}

void Typesetter::addTruncated(std::string_view line, LineBreakMode mode) {
  if (line.size() > 2 * kLongestShown) {
    std::size_t head = kLongestShown, tail = line.size() - kLongestShown;
    while (isContinuation(line[head])) --head;
    while (tail < line.size() && isContinuation(line[tail])) ++tail;
    joined_.assign(line.substr(0, head));
    joined_ += line.substr(tail);
    line = joined_;
  }
  clusters_.assign(line, composer_.iterators());
  places_.clear();
  for (std::uint32_t unit = 0; unit <= clusters_.size(); ++unit) {
    if (clusters_.isClusterAt(unit) || unit == 0 || unit == clusters_.size()) places_.push_back(clusters_.byteAt(unit));
  }
  const auto keeping = [&](std::size_t count) {
    if (mode == LineBreakMode::kHeadTruncation) return shortened(line, 0, count);
    if (mode == LineBreakMode::kTailTruncation) return shortened(line, count, 0);
    return shortened(line, count - count / 2, count / 2);
  };
  const auto doesFit = [&](std::size_t count) {
    const std::string_view candidate = keeping(count);
    return fits(candidate, surveyOf(candidate));
  };
  // The most clusters that fit: in growing steps, so that a long line costs no more than what is shown of it.
  std::size_t fitting = 0, failing = places_.size() - 1;
  for (std::size_t step = 1; fitting + step < failing; step *= 2) {
    if (doesFit(fitting + step)) {
      fitting += step;
    } else {
      failing = fitting + step;
      break;
    }
  }
  while (failing - fitting > 1) {
    const std::size_t middle = fitting + (failing - fitting) / 2;
    (doesFit(middle) ? fitting : failing) = middle;
  }
  const std::string_view kept = keeping(fitting);
  addLine(kept, surveyOf(kept));
}

}  // namespace chatsum::platform::system
