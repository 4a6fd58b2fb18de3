#include "platform/foundation/Utf8.h"

#include <cstring>

namespace chatsum::utf8 {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::string_view kReplacementBytes = "\xEF\xBF\xBD";

struct Sequence {
  std::size_t length;  // bytes to consume: the whole sequence, or the malformed part that one U+FFFD stands for
  bool valid;
};

unsigned byteAt(std::string_view bytes, std::size_t position) { return static_cast<unsigned char>(bytes[position]); }

// How many bytes a sequence with this first byte has, 0 for a byte that cannot start one.
std::size_t sequenceLength(unsigned first) {
  if (first < 0x80) return 1;
  if (first < 0xC2) return 0;
  if (first < 0xE0) return 2;
  if (first < 0xF0) return 3;
  return first < 0xF5 ? 4 : 0;
}

// The second byte carries the rules against overlong forms, surrogates and numbers beyond U+10FFFF.
bool secondByteFits(unsigned first, unsigned second) {
  switch (first) {
    case 0xE0:
      return second >= 0xA0 && second <= 0xBF;
    case 0xED:
      return second >= 0x80 && second <= 0x9F;
    case 0xF0:
      return second >= 0x90 && second <= 0xBF;
    case 0xF4:
      return second >= 0x80 && second <= 0x8F;
    default:
      return second >= 0x80 && second <= 0xBF;
  }
}

Sequence sequenceAt(std::string_view bytes, std::size_t position) {
  const unsigned first = byteAt(bytes, position);
  const std::size_t wanted = sequenceLength(first);
  if (wanted == 0) return {1, false};
  for (std::size_t i = 1; i < wanted; ++i) {
    if (position + i >= bytes.size()) return {i, false};
    const unsigned next = byteAt(bytes, position + i);
    const bool fits = i == 1 ? secondByteFits(first, next) : (next & 0xC0U) == 0x80U;
    if (!fits) return {i, false};
  }
  return {wanted, true};
}

// Skips plain ASCII eight bytes at a time, which most texts are.
std::size_t skipAscii(std::string_view bytes, std::size_t position) {
  while (position + sizeof(std::uint64_t) <= bytes.size()) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + position, sizeof word);
    if ((word & 0x8080808080808080ULL) != 0) break;
    position += sizeof word;
  }
  while (position < bytes.size() && byteAt(bytes, position) < 0x80) ++position;
  return position;
}

/// The code point of a valid sequence.
char32_t codePointOf(std::string_view sequence) {
  const unsigned first = byteAt(sequence, 0);
  if (sequence.size() == 1) return first;
  char32_t value = first & (0x7FU >> sequence.size());
  for (std::size_t i = 1; i < sequence.size(); ++i) value = (value << 6) | (byteAt(sequence, i) & 0x3FU);
  return value;
}

}  // namespace

char32_t next(std::string_view text, std::size_t& at) {
  const Sequence sequence = sequenceAt(text, at);
  const std::size_t start = at;
  at += sequence.length;
  return sequence.valid ? codePointOf(text.substr(start, sequence.length)) : kReplacement;
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
  for (std::size_t at = skipAscii(text, 0); at < text.size(); at = skipAscii(text, at)) {
    const Sequence sequence = sequenceAt(text, at);
    if (!sequence.valid) return false;
    at += sequence.length;
  }
  return true;
}

int appendRepaired(std::string& text, std::string_view bytes) {
  int replaced = 0;
  std::size_t copied = 0;
  std::size_t position = 0;
  while ((position = skipAscii(bytes, position)) < bytes.size()) {
    const Sequence sequence = sequenceAt(bytes, position);
    if (!sequence.valid) {
      text.append(bytes.substr(copied, position - copied));
      text.append(kReplacementBytes);
      copied = position + sequence.length;
      ++replaced;
    }
    position += sequence.length;
  }
  text.append(bytes.substr(copied));
  return replaced;
}

std::string repaired(std::string_view text) {
  std::string result;
  appendRepaired(result, text);
  return result;
}

std::size_t lengthWithoutPartialTail(std::string_view bytes) {
  // A cut sequence is at most three bytes long: its first byte and up to two that follow.
  for (std::size_t back = 1; back <= 3 && back <= bytes.size(); ++back) {
    const std::size_t position = bytes.size() - back;
    const unsigned first = byteAt(bytes, position);
    if ((first & 0xC0U) == 0x80U) continue;
    const bool cut = sequenceLength(first) > back && sequenceAt(bytes, position).length == back;
    return cut ? position : bytes.size();
  }
  return bytes.size();
}

}  // namespace chatsum::utf8
