#include "platform/system/pdf/CffCharset.h"

#include <cstddef>

namespace chatsum::platform::system {
namespace {

/// Reads big-endian numbers; behind the end everything is 0 and `isGood` false.
class Cursor {
 public:
  Cursor(std::span<const std::uint8_t> bytes, std::size_t at) : bytes_(bytes), at_(at) {}

  std::uint32_t number(std::size_t bytes) {
    std::uint32_t value = 0;
    for (; bytes > 0; --bytes) {
      isGood_ = isGood_ && at_ < bytes_.size();
      value = value << 8 | (isGood_ ? bytes_[at_] : 0U);
      ++at_;
    }
    return value;
  }
  void skip(std::size_t bytes) {
    at_ += bytes;
    isGood_ = isGood_ && at_ <= bytes_.size();
  }
  [[nodiscard]] bool isGood() const { return isGood_; }
  [[nodiscard]] bool isAtEnd() const { return at_ >= bytes_.size(); }
  [[nodiscard]] std::size_t at() const { return at_; }

 private:
  std::span<const std::uint8_t> bytes_;
  std::size_t at_;
  bool isGood_ = true;
};

/// Passes over an INDEX and answers its first element.
std::span<const std::uint8_t> firstOfIndex(Cursor& cursor, std::span<const std::uint8_t> table) {
  const std::size_t count = cursor.number(2);
  if (count == 0) return {};
  const std::size_t offsetSize = cursor.number(1);
  if (offsetSize < 1 || offsetSize > 4) return {};
  // One offset more than elements: each element's begin, and the end of the last.
  const std::size_t first = cursor.number(offsetSize), second = cursor.number(offsetSize);
  std::size_t end = second;
  if (count > 1) {
    cursor.skip((count - 2) * offsetSize);
    end = cursor.number(offsetSize);
  }
  if (end < 1) return {};
  // Offsets count from the byte before the data.
  const std::size_t data = cursor.at() - 1;
  cursor.skip(end - 1);
  if (!cursor.isGood() || first < 1 || second < first || data + second > table.size()) return {};
  return table.subspan(data + first, second - first);
}

struct TopDictionary {
  bool isCidKeyed = false;
  std::uint32_t charset = 0;
};

TopDictionary topDictionary(std::span<const std::uint8_t> bytes) {
  constexpr std::uint32_t kCharset = 15, kEscape = 12, kRos = 30;
  TopDictionary found;
  std::uint32_t operand = 0;
  Cursor cursor(bytes, 0);
  while (!cursor.isAtEnd()) {
    const std::uint32_t b = cursor.number(1);
    if (b == kEscape) {
      found.isCidKeyed = cursor.number(1) == kRos || found.isCidKeyed;
    } else if (b <= 21) {
      if (b == kCharset) found.charset = operand;
    } else if (b == 28) {
      operand = cursor.number(2);
    } else if (b == 29) {
      operand = cursor.number(4);
    } else if (b == 30) {  // a real number: half bytes up to one of 15
      while (cursor.isGood() && (cursor.number(1) & 0xF) != 0xF) {
      }
    } else if (b >= 32 && b <= 246) {
      operand = b - 139;
    } else if (b >= 247 && b <= 250) {
      operand = (b - 247) * 256 + cursor.number(1) + 108;
    } else if (b >= 251 && b <= 254) {
      cursor.skip(1);  // negative, no offset
      operand = 0;
    }
  }
  return found;
}

}  // namespace

std::optional<CffCharset> CffCharset::read(std::span<const std::uint8_t> table, std::uint32_t glyphs) {
  Cursor cursor(table, 2);
  const std::size_t headerSize = cursor.number(1);
  cursor = Cursor(table, headerSize);
  firstOfIndex(cursor, table);  // names
  const TopDictionary top = topDictionary(firstOfIndex(cursor, table));
  if (!top.isCidKeyed || !cursor.isGood()) return std::nullopt;

  CffCharset charset;
  charset.characters_.push_back(0);
  // 0 to 2 name charsets that only other fonts may have.
  if (top.charset <= 2) return std::nullopt;
  cursor = Cursor(table, top.charset);
  const std::uint32_t format = cursor.number(1);
  if (format > 2) return std::nullopt;
  while (charset.characters_.size() < glyphs && cursor.isGood()) {
    const std::uint32_t first = cursor.number(2);
    const std::uint32_t more = format == 0 ? 0 : cursor.number(format);
    for (std::uint32_t i = 0; i <= more && charset.characters_.size() < glyphs; ++i) {
      charset.characters_.push_back(static_cast<std::uint16_t>(first + i));
    }
  }
  if (!cursor.isGood()) return std::nullopt;
  return charset;
}

}  // namespace chatsum::platform::system
