#include "platform/system/text/Composer.h"

#include <unicode/utf16.h>

#include <algorithm>

#include "platform/foundation/Utf8.h"

namespace chatsum::platform::system {
namespace {

/// Longer words are not kept as such; ICU looks at that much of other text at once. Bytes.
constexpr std::size_t kLongestWord = 256, kStretch = 8192;
/// How much text on both sides of a space tells whether a line may end there, bytes, and behind a stretch's end, code
/// units.
constexpr std::size_t kContext = 32;

PieceStyle westernStyle(const FontFace& face) { return {&face, HB_SCRIPT_LATIN, HB_LANGUAGE_INVALID, false}; }

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Han characters begin with one of these bytes; so do emoji and others.
bool mayBeHan(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0xE3; });
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// Whether no line may end inside: letters with apostrophes between them, and punctuation behind. Most words are so.
bool isSolid(std::string_view word) {
  std::size_t at = 0;
  while (at < word.size() && (isLetter(word[at]) || (word[at] == '\'' && at > 0 && isLetter(word[at - 1])))) ++at;
  while (at < word.size() && (word[at] == '.' || word[at] == ',' || word[at] == '!' || word[at] == '?')) ++at;
  return at == word.size();
}

/// The last or first bytes, no character cut.
std::string_view endOf(std::string_view text, std::size_t size) {
  std::size_t at = text.size() > size ? text.size() - size : 0;
  while (at > 0 && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U) --at;
  return text.substr(at);
}
std::string_view beginOf(std::string_view text, std::size_t size) {
  if (text.size() <= size) return text;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) --size;
  return text.substr(0, size);
}

/// Where a stretch that goes on is best ended: where a line may end, else between clusters.
std::uint32_t placeToEnd(const Paragraph& paragraph) {
  const std::uint32_t last = paragraph.size() - std::uint32_t{kContext}, first = paragraph.size() / 2;
  for (std::uint32_t at = last; at > first; --at) {
    if (paragraph.mayBreakAt(at)) return at;
  }
  for (std::uint32_t at = last; at > first; --at) {
    if (paragraph.isClusterAt(at)) return at;
  }
  return U16_IS_TRAIL(paragraph[last]) ? last - 1 : last;
}

}  // namespace

void Composer::begin(std::string_view text, const NamedFont& font) {
  text_ = text;
  font_ = &font;
  han_.reset();
}

HanLanguage Composer::han() {
  if (!han_) han_ = hanLanguageOf(text_);
  return *han_;
}

const KeptPiece& Composer::spaceOf(const NamedFont& font) {
  found_.clear();
  pieces_->append(westernStyle(*font.primary), " ", shaper_, found_);
  return *found_.front();
}

void Composer::compose(std::string_view line, const TextSurvey& survey, LineBuilder& lines) {
  lines_ = &lines;
  hasPending_ = false;
  lineMayBeHan_ = mayBeHan(line);
  // ICU looks at the directions of a stretch at a time.
  if (survey.isPlain && (!survey.isBidirectional || line.size() <= kStretch)) {
    composeWords(line, survey.isBidirectional);
  } else {
    composeWhole(line, survey.isBidirectional);
  }
  flush();
}

void Composer::add(const TextUnit& unit) {
  flush();
  pending_ = unit;
  hasPending_ = true;
}

void Composer::flush() {
  if (hasPending_) lines_->add(pending_);
  hasPending_ = false;
}

void Composer::composeWords(std::string_view line, bool isBidirectional) {
  before_ = {};
  last_ = WordEdge::kPlain;
  if (isBidirectional) {
    directions_.assignUnmarked(line);
    directions_.findLevels(UBIDI_DEFAULT_LTR);
  }
  std::uint32_t place = 0;  // of `at`, in `directions_`
  const auto moveTo = [&](std::size_t at) { place = isBidirectional ? directions_.unitAt(at, place) : 0; };
  for (std::size_t at = 0; at < line.size() && !lines_->isDone();) {
    const std::size_t begin = at;
    while (at < line.size() && line[at] != ' ') ++at;
    const std::string_view text = line.substr(begin, at - begin);
    if (!text.empty()) {
      const std::uint32_t first = place;
      moveTo(at);
      const std::uint8_t level = isBidirectional ? directions_.levelAt(first) : 0;
      const bool isUnique = text.size() > kLongestWord || (isBidirectional && !directions_.isOfOneLevel(first, place));
      if (isUnique) {
        addUniqueWord(text, first, isBidirectional);
      } else {
        addWord(text, level);
      }
      before_ = text;
    }
    const std::size_t spaces = at;
    while (at < line.size() && line[at] == ' ') ++at;
    if (at > spaces) addSpaces(static_cast<std::uint32_t>(at - spaces), place, isBidirectional);
    moveTo(at);
  }
}

void Composer::addSpaces(std::uint32_t count, std::uint32_t place, bool isBidirectional) {
  if (!isBidirectional) {
    if (!hasPending_) add({});
    pending_.spaces += count;
    return;
  }
  pending_.mayBreak = false;  // not between a word and its spaces
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint8_t level = directions_.levelAt(place + i);
    if (i == 0 || level != pending_.level) add({nullptr, 0, level, false, false});
    ++pending_.spaces;
  }
}

std::string_view Composer::contextFor(WordEdge first) const {
  const bool isSpecial = first == WordEdge::kSpecial || last_ == WordEdge::kSpecial;
  if (!hasPending_ || (!isSpecial && (first != WordEdge::kOpening || last_ != WordEdge::kQuote))) return {};
  if (before_.empty()) return " ";
  // Nothing but the last character counts if that is a plain one; the less, the more alike are such words.
  return endOf(before_, last_ == WordEdge::kPlain ? 1 : kContext);
}

std::size_t Composer::putAround(std::string_view before, std::string_view word) {
  around_.assign(before);
  if (!before.empty()) around_ += ' ';
  const std::size_t place = around_.size();
  around_ += word;
  return place;
}

void Composer::addWord(std::string_view text, std::uint8_t level) {
  const bool isRightToLeft = (level & 1U) != 0;
  const Word* word = wordOf(text, isRightToLeft, {});
  const std::string_view before = contextFor(word ? word->first : firstEdgeOf(text));
  if (!before.empty()) word = wordOf(text, isRightToLeft, before);
  pending_.mayBreak = word ? word->mayBreakBefore : mayBreakBefore_;
  for (const WordPart& part : word ? word->parts : std::span<const WordPart>(parts_)) {
    add({part.piece, 0, level, false, part.mayBreak});
  }
  last_ = word ? word->last : lastEdgeOf(text);
}

void Composer::addUniqueWord(std::string_view text, std::uint32_t place, bool isBidirectional) {
  const std::string_view before = contextFor(firstEdgeOf(text));
  if (isBidirectional) {
    const std::size_t begin = putAround(before, text);
    paragraph_.assign(around_, iterators_);
    const std::uint32_t unit = paragraph_.unitAt(begin);
    pending_.mayBreak = before.empty() || paragraph_.mayBreakAt(unit);
    paragraph_.setLevels(unit, directions_, place);
    for (const TextItem& item : itemizer_.itemize(paragraph_, *font_, han())) {
      if (item.begin >= unit) addItem(item);
    }
  } else {
    const std::size_t begin = putAround(before, beginOf(text, kContext));
    paragraph_.assign(around_, iterators_);
    pending_.mayBreak = before.empty() || paragraph_.mayBreakAt(paragraph_.unitAt(begin));
    composeWhole(text, false);
  }
  last_ = lastEdgeOf(text);
}

const Word* Composer::wordOf(std::string_view text, bool isRightToLeft, std::string_view before) {
  // Which Han forms are meant is told by the text around, so it is part of the key of whatever may have Han in it.
  const bool dependsOnHan = lineMayBeHan_ && mayBeHan(text);
  Word::Key key{std::uint64_t{font_->number} << 4 | (isRightToLeft ? 8U : 0U), text};
  if (dependsOnHan) key.context += 1 + static_cast<std::uint64_t>(han());
  if (!before.empty()) {
    // No word has a space inside.
    putAround(before, text);
    key.text = key_ = around_;
  }
  const std::uint64_t hash = mixHash(hashOf(key.text), key.context);
  const Word* word = recent_.find(hash, key);
  if (word) return word;

  word = words_->find(hash, key);
  if (!word) {
    makeWord(text, isRightToLeft, before);
    if (pieces_->isFull()) return nullptr;
    word = words_->keep(hash, key, [&](TextArena& arena) {
      Word made;
      made.hash = hash;
      made.context = key.context;
      // A word of one piece has that piece's text.
      const bool isOne = parts_.size() == 1 && parts_[0].piece && parts_[0].piece->text == key.text;
      made.text = isOne ? parts_[0].piece->text : arena.copy(key.text);
      made.parts = arena.copy(std::span<const WordPart>(parts_));
      made.first = firstEdgeOf(text);
      made.last = lastEdgeOf(text);
      made.mayBreakBefore = mayBreakBefore_;
      return arena.make(made);
    });
  }
  recent_.keep(word);
  return word;
}

void Composer::makeWord(std::string_view text, bool isRightToLeft, std::string_view before) {
  parts_.clear();
  mayBreakBefore_ = true;
  if (before.empty() && !isRightToLeft && font_->showsAscii && isAscii(text)) return makeAsciiWord(text);
  const std::size_t begin = putAround(before, text);
  paragraph_.assign(around_, iterators_);
  if (isRightToLeft) paragraph_.setLevels(0, 1);
  const std::uint32_t unit = paragraph_.unitAt(begin);
  // The text before counts for the places inside the word too: for one behind a hyphen at its front, for instance.
  mayBreakBefore_ = before.empty() || paragraph_.mayBreakAt(unit);
  for (const TextItem& item : itemizer_.itemize(paragraph_, *font_, han())) {
    if (item.begin < unit) continue;
    found_.clear();
    pieces_->append(item.style, paragraph_.bytes(item.begin, item.end), shaper_, found_);
    if (found_.empty()) found_.push_back(nullptr);
    for (const KeptPiece* piece : found_) parts_.push_back({piece, false});
    parts_.back().mayBreak = item.mayBreak;
  }
}

void Composer::makeAsciiWord(std::string_view text) {
  const PieceStyle style = westernStyle(*font_->primary);
  const auto addPart = [&](std::string_view part) {
    found_.clear();
    pieces_->append(style, part, shaper_, found_);
    for (const KeptPiece* piece : found_) parts_.push_back({piece, false});
    parts_.back().mayBreak = true;
  };
  if (isSolid(text)) return addPart(text);
  paragraph_.assign(text, iterators_);
  for (std::uint32_t begin = 0, at = 1; at <= text.size(); ++at) {
    if (!paragraph_.mayBreakAt(at) && at < text.size()) continue;
    addPart(text.substr(begin, at - begin));
    begin = at;
  }
}

void Composer::composeWhole(std::string_view text, bool isBidirectional) {
  UBiDiLevel base = UBIDI_DEFAULT_LTR;
  while (!text.empty() && !lines_->isDone()) {
    const std::string_view stretch = beginOf(text, kStretch);
    paragraph_.assign(stretch, iterators_);
    if (stretch.size() < text.size()) paragraph_.shorten(placeToEnd(paragraph_));
    if (isBidirectional) base = paragraph_.findLevels(base);
    for (const TextItem& item : itemizer_.itemize(paragraph_, *font_, han())) addItem(item);
    text.remove_prefix(paragraph_.byteAt(paragraph_.size()));
  }
}

void Composer::addItem(const TextItem& item) {
  if (item.kind != TextItem::Kind::kText) {
    const bool isTab = item.kind == TextItem::Kind::kTab;
    return add({nullptr, isTab ? 0 : item.end - item.begin, item.level, isTab, item.mayBreak});
  }
  found_.clear();
  pieces_->append(item.style, paragraph_.bytes(item.begin, item.end), shaper_, found_);
  if (found_.empty()) found_.push_back(nullptr);
  for (const KeptPiece* piece : found_) add({piece, 0, item.level, false, false});
  pending_.mayBreak = item.mayBreak;
}

}  // namespace chatsum::platform::system
