#include "platform/system/text/TextSurvey.h"

#include <cstdint>
#include <cstring>

#include "platform/foundation/Utf8.h"
#include "platform/system/text/CharacterTraits.h"

namespace chatsum::platform::system {
namespace {

constexpr char32_t kReplacement = 0xFFFD, kFirstMark = 0x300;

/// Whether one of eight bytes is a control or no ASCII.
bool hasUnusual(std::uint64_t bytes) {
  constexpr std::uint64_t kOnes = 0x0101010101010101ULL, kHighs = 0x8080808080808080ULL;
  const std::uint64_t deletes = bytes ^ (kOnes * 0x7F);
  return (((bytes - kOnes * 0x20) | (deletes - kOnes) | bytes) & kHighs) != 0;
}

std::size_t skipUsual(std::string_view text, std::size_t at) {
  std::uint64_t bytes = 0;
  for (; at + sizeof bytes <= text.size(); at += sizeof bytes) {
    std::memcpy(&bytes, text.data() + at, sizeof bytes);
    if (hasUnusual(bytes)) break;
  }
  return at;
}

}  // namespace

TextSurvey survey(std::string_view text) {
  TextSurvey found;
  for (std::size_t at = skipUsual(text, 0); at < text.size();) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte >= 0x20 && byte < 0x7F) {
      ++at;
      continue;
    }
    const std::size_t begin = at;
    const char32_t c = utf8::next(text, at);
    if (c == '\t') {
      found.isPlain = false;
    } else if (isNewline(c)) {
      found.hasNewlines = true;
    } else if (isHiddenControl(c)) {
      found.isClean = false;
    } else if (c == kReplacement && (text.size() - begin < 3 || text.compare(begin, 3, "\xEF\xBF\xBD") != 0)) {
      found.isClean = false;
    } else if (c >= kFirstMark) {
      found.isBidirectional = found.isBidirectional || mayRunRightToLeft(c);
      const bool followsBlank = begin == 0 || static_cast<unsigned char>(text[begin - 1]) <= 0x20;
      if (followsBlank && joinsBefore(c)) found.isPlain = false;
    }
    if (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) at = skipUsual(text, at);
  }
  return found;
}

void appendClean(std::string& result, std::string_view text, bool newlinesAsSpaces) {
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = utf8::next(text, at);
    if (isNewline(c)) {
      if (c == '\r' && at < text.size() && text[at] == '\n') ++at;
      result += newlinesAsSpaces ? ' ' : '\n';
    } else if (!isHiddenControl(c)) {
      utf8::append(result, c);
    }
  }
}

std::string_view takeLine(std::string_view& text) {
  for (std::size_t at = 0; at < text.size();) {
    const auto byte = static_cast<unsigned char>(text[at]);
    // What begins with another byte is no newline.
    if (byte > '\r' && byte != 0xC2 && byte != 0xE2) {
      ++at;
      continue;
    }
    const std::size_t begin = at;
    const char32_t c = utf8::next(text, at);
    if (!isNewline(c)) continue;
    if (c == '\r' && at < text.size() && text[at] == '\n') ++at;
    const std::string_view line = text.substr(0, begin);
    text.remove_prefix(at);
    return line;
  }
  const std::string_view line = text;
  text = {};
  return line;
}

}  // namespace chatsum::platform::system
