#include "hosts/device/body/Utf8Repair.h"

#include <cstdint>
#include <cstring>

namespace chatsum::device {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

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

}  // namespace

int appendValidUtf8(std::string& text, std::string_view bytes) {
  int replaced = 0;
  std::size_t copied = 0;
  std::size_t position = 0;
  while ((position = skipAscii(bytes, position)) < bytes.size()) {
    const Sequence sequence = sequenceAt(bytes, position);
    if (!sequence.valid) {
      text.append(bytes.substr(copied, position - copied));
      text.append(kReplacement);
      copied = position + sequence.length;
      ++replaced;
    }
    position += sequence.length;
  }
  text.append(bytes.substr(copied));
  return replaced;
}

void appendCodePoint(std::string& text, char32_t codePoint) {
  const auto append = [&text](std::uint32_t byte) {
    text.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
  };
  const std::uint32_t c = codePoint;
  if (c < 0x80) {
    append(c);
  } else if (c < 0x800) {
    append(0xC0U | (c >> 6U));
    append(0x80U | (c & 0x3FU));
  } else if (c < 0x10000) {
    if (c >= 0xD800 && c <= 0xDFFF) {
      text.append(kReplacement);
      return;
    }
    append(0xE0U | (c >> 12U));
    append(0x80U | ((c >> 6U) & 0x3FU));
    append(0x80U | (c & 0x3FU));
  } else if (c <= 0x10FFFF) {
    append(0xF0U | (c >> 18U));
    append(0x80U | ((c >> 12U) & 0x3FU));
    append(0x80U | ((c >> 6U) & 0x3FU));
    append(0x80U | (c & 0x3FU));
  } else {
    text.append(kReplacement);
  }
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

}  // namespace chatsum::device
