#include "platform/foundation/Utf8.h"

#include <cstring>

namespace chatsum::utf8 {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// The length of the valid sequence at `at` and its code point; length 0 when there is none.
std::size_t decode(std::string_view text, std::size_t at, char32_t& codePoint) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) {
    codePoint = lead;
    return 1;
  }
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - at < length) return 0;
  char32_t value = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    value = (value << 6) | (byte(i) & 0x3Fu);
  }
  const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
  if (overlong || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return 0;
  codePoint = value;
  return length;
}

/// How many ASCII bytes follow, eight at a time.
std::size_t asciiRun(std::string_view text, std::size_t at) {
  const std::size_t start = at;
  while (at + 8 <= text.size()) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, 8);
    if (word & 0x8080808080808080u) break;
    at += 8;
  }
  while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
  return at - start;
}

}  // namespace

char32_t next(std::string_view text, std::size_t& at) {
  char32_t codePoint = kReplacement;
  const std::size_t length = decode(text, at, codePoint);
  at += length ? length : 1;
  return length ? codePoint : kReplacement;
}

void append(std::string& text, char32_t c) {
  if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = kReplacement;
  if (c < 0x80) {
    text += static_cast<char>(c);
  } else if (c < 0x800) {
    text += static_cast<char>(0xC0 | (c >> 6));
    text += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    text += static_cast<char>(0xE0 | (c >> 12));
    text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    text += static_cast<char>(0xF0 | (c >> 18));
    text += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (c & 0x3F));
  }
}

std::size_t utf16Length(std::string_view text) {
  std::size_t units = 0;
  for (std::size_t at = 0; at < text.size();) units += next(text, at) > 0xFFFF ? 2 : 1;
  return units;
}

std::string_view lastUtf16(std::string_view text, std::size_t units) {
  std::size_t excess = utf16Length(text);
  std::size_t at = 0;
  while (excess > units) excess -= next(text, at) > 0xFFFF ? 2 : 1;
  return text.substr(at);
}

bool isValid(std::string_view text) {
  char32_t codePoint = 0;
  for (std::size_t at = asciiRun(text, 0); at < text.size(); at += asciiRun(text, at)) {
    const std::size_t length = decode(text, at, codePoint);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::string repaired(std::string_view text) {
  std::string result;
  result.reserve(text.size() + 16);
  for (std::size_t at = 0; at < text.size();) append(result, next(text, at));
  return result;
}

}  // namespace chatsum::utf8
