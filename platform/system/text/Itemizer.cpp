#include "platform/system/text/Itemizer.h"

#include <unicode/unorm2.h>
#include <unicode/utf16.h>

#include <algorithm>

namespace chatsum::platform::system {
namespace {

char32_t firstOf(std::u16string_view text) {
  std::size_t at = 0;
  char32_t c = 0;
  U16_NEXT(text.data(), at, text.size(), c);
  return c;
}

bool isOpen(UScriptCode script) { return script == USCRIPT_COMMON || script == USCRIPT_INHERITED; }

/// The first character that a face would have to show and does not, 0 when there is none.
template <class Shows>
char32_t firstMissing(std::u16string_view text, Shows shows) {
  char32_t c = 0;
  for (std::size_t at = 0; at < text.size();) {
    U16_NEXT(text.data(), at, text.size(), c);
    if (!shows(c) && !isIgnorable(c)) return c;
  }
  return 0;
}

/// A letter with its marks as one character where there is one; shaping finds it too.
std::u16string composed(std::u16string_view text) {
  UErrorCode error = U_ZERO_ERROR;
  std::u16string result(text.size(), 0);
  const int length = static_cast<int>(text.size());
  const int size = unorm2_normalize(unorm2_getNFCInstance(&error), text.data(), length, result.data(), length, &error);
  if (U_FAILURE(error)) return std::u16string(text);
  result.resize(static_cast<std::size_t>(size));
  return result;
}

}  // namespace

const std::vector<TextItem>& Itemizer::itemize(const Paragraph& paragraph, const NamedFont& font, HanLanguage han) {
  items_.clear();
  const std::uint32_t size = paragraph.size();
  // A space that a mark stands on is a character like others.
  const auto isBlank = [&](std::uint32_t at) {
    return (paragraph[at] == u' ' || paragraph[at] == u'\t') && paragraph.isClusterAt(at + 1);
  };
  for (std::uint32_t at = 0; at < size;) {
    std::uint32_t end = at + 1;
    if (!isBlank(at)) {
      while (end < size && !isBlank(end)) ++end;
      addWord(paragraph, at, end, font, han);
      at = end;
      continue;
    }
    TextItem item;
    item.kind = paragraph[at] == u'\t' ? TextItem::Kind::kTab : TextItem::Kind::kSpaces;
    item.level = paragraph.levelAt(at);
    if (item.kind == TextItem::Kind::kSpaces) {
      while (end < size && paragraph[end] == u' ' && isBlank(end) && paragraph.levelAt(end) == item.level) ++end;
    }
    item.begin = at;
    item.end = end;
    item.mayBreak = paragraph.mayBreakAt(end);
    items_.push_back(item);
    at = end;
  }
  return items_;
}

void Itemizer::findScripts() {
  // Characters of no script go with those before them, at the beginning of a word with those behind.
  UScriptCode script = USCRIPT_COMMON;
  for (const Cluster& cluster : clusters_) {
    if (isOpen(cluster.script)) continue;
    script = cluster.script;
    break;
  }
  if (isOpen(script)) script = USCRIPT_LATIN;
  for (Cluster& cluster : clusters_) {
    if (isOpen(cluster.script)) {
      cluster.script = script;
    } else {
      script = cluster.script;
    }
  }
}

void Itemizer::addWord(const Paragraph& paragraph, std::uint32_t begin, std::uint32_t end, const NamedFont& font,
                       HanLanguage han) {
  clusters_.clear();
  for (std::uint32_t at = begin, next = at; at < end; at = next) {
    do ++next;
    while (next < end && !paragraph.isClusterAt(next));
    const std::u16string_view text = paragraph.units(at, next);
    clusters_.push_back({at, next, scriptOf(firstOf(text)), nullptr, isEmoji(text)});
  }
  findScripts();

  TextItem item;
  const Cluster* previous = nullptr;
  const auto close = [&](std::uint32_t at) {
    // Even a cluster may be too long: thousands of marks on one letter.
    const std::uint32_t longest = previous->isEmoji ? kLongestEmoji : kLongestItem;
    while (at - item.begin > longest) {
      TextItem part = item;
      part.end = part.begin + longest;
      if (U16_IS_TRAIL(paragraph[part.end])) ++part.end;
      part.mayBreak = false;
      items_.push_back(part);
      item.begin = part.end;
    }
    item.end = at;
    item.mayBreak = paragraph.mayBreakAt(at);
    if (item.end > item.begin) items_.push_back(item);
  };
  for (Cluster& cluster : clusters_) {
    cluster.face = faceFor(paragraph.units(cluster.begin, cluster.end), cluster, font, han);
    const std::uint8_t level = paragraph.levelAt(cluster.begin);
    const bool continues = previous && previous->face == cluster.face && previous->isEmoji == cluster.isEmoji &&
                           previous->script == cluster.script && item.level == level &&
                           !paragraph.mayBreakAt(cluster.begin) &&
                           cluster.end - item.begin <= (cluster.isEmoji ? kLongestEmoji : kLongestItem);
    if (!continues) {
      if (previous) close(cluster.begin);
      item = TextItem{};
      item.begin = cluster.begin;
      item.level = level;
      item.style.face = cluster.face;
      item.style.script = cluster.isEmoji ? HB_SCRIPT_COMMON : shapingScript(cluster.script);
      item.style.language = shapingLanguage(cluster.script, han);
      item.style.isRightToLeft = (level & 1U) != 0;
    }
    previous = &cluster;
  }
  close(end);
}

const FontFace* Itemizer::faceFor(std::u16string_view cluster, const Cluster& traits, const NamedFont& font,
                                  HanLanguage han) {
  const char32_t base = firstOf(cluster);
  if (traits.isEmoji) {
    if (const FontFace* face = fallbackFor(base, USCRIPT_COMMON, han, true)) return face;
  }
  const auto shows = [&](char32_t c) { return font.shows(c); };
  char32_t missing = firstMissing(cluster, shows);
  if (missing != 0 && cluster.size() > 1) missing = firstMissing(composed(cluster), shows);
  if (missing == 0) return font.primary;

  if (const FontFace* face = fallbackFor(missing, traits.script, han, false)) {
    if (missing == base || face->glyphFor(base) != 0) return face;
  }
  if (font.shows(base)) return font.primary;
  const FontFace* face = fallbackFor(base, traits.script, han, false);
  return face ? face : font.primary;
}

const FontFace* Itemizer::fallbackFor(char32_t c, UScriptCode script, HanLanguage han, bool asEmoji) {
  const std::uint64_t key = (static_cast<std::uint64_t>(c) << 32) | (static_cast<std::uint64_t>(script) << 8) |
                            (static_cast<std::uint64_t>(han) << 1) | (asEmoji ? 1U : 0U);
  Answer& answer = answers_[(key ^ (key >> 32)) % answers_.size()];
  if (answer.key != key) answer = {key, fonts_->fallbackFor(c, script, han, asEmoji)};
  return answer.face;
}

}  // namespace chatsum::platform::system
