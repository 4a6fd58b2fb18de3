#include "platform/system/propertylists/PropertyListGuard.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

#include "platform/foundation/Utf8.h"

namespace chatsum::platform::system {
namespace {

using namespace propertylist;

constexpr std::string_view kBinaryMark = "bplist00";
constexpr std::size_t kTrailerBytes = 32;

std::uint64_t bigEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (const char byte : bytes) value = value << 8 | static_cast<unsigned char>(byte);
  return value;
}

/// Goes from the top object down to everything that it refers to, again for every reference, as a parser that makes a
/// tree of it does. The counts end a walk in circles, too.
class BinaryWalk {
 public:
  explicit BinaryWalk(std::string_view bytes) : bytes_(bytes) {}

  bool isWithinLimits() {
    if (bytes_.size() < kBinaryMark.size() + kTrailerBytes) return false;
    const std::string_view trailer = bytes_.substr(bytes_.size() - kTrailerBytes);
    offsetSize_ = static_cast<unsigned char>(trailer[6]);
    referenceSize_ = static_cast<unsigned char>(trailer[7]);
    objectCount_ = bigEndian(trailer.substr(8, 8));
    const std::uint64_t top = bigEndian(trailer.substr(16, 8));
    const std::uint64_t table = bigEndian(trailer.substr(24, 8));
    const std::size_t end = bytes_.size() - kTrailerBytes;
    const auto isSize = [](std::size_t size) { return size >= 1 && size <= 8; };
    if (!isSize(offsetSize_) || !isSize(referenceSize_) || table < kBinaryMark.size() || table > end) return false;
    if (objectCount_ == 0 || objectCount_ > (end - table) / offsetSize_) return false;
    table_ = static_cast<std::size_t>(table);
    return visit(top);
  }

 private:
  /// What an object's first bytes say: its kind, how many things it holds, and where they begin.
  struct Head {
    unsigned kind = 0;
    std::uint64_t count = 0;
    std::size_t at = 0;
  };

  bool readHead(std::uint64_t object, Head& head) const {
    if (object >= objectCount_) return false;
    const std::size_t entry = table_ + static_cast<std::size_t>(object) * offsetSize_;
    const std::uint64_t offset = bigEndian(bytes_.substr(entry, offsetSize_));
    if (offset < kBinaryMark.size() || offset >= table_) return false;
    head.at = static_cast<std::size_t>(offset);
    const auto marker = static_cast<unsigned char>(bytes_[head.at++]);
    head.kind = marker >> 4U;
    head.count = marker & 0xFU;
    const bool isCounted = head.kind >= 0x4 && head.kind != 0x8;
    if (!isCounted || head.count != 0xF) return true;
    // A long count follows as an integer object of its own.
    if (head.at >= table_) return false;
    const auto size = static_cast<unsigned char>(bytes_[head.at++]);
    if (size >> 4U != 0x1 || (size & 0xFU) > 3) return false;
    const std::size_t width = std::size_t{1} << (size & 0xFU);
    if (table_ - head.at < width) return false;
    head.count = bigEndian(bytes_.substr(head.at, width));
    head.at += width;
    return true;
  }

  bool visit(std::uint64_t object) {
    Head head;
    if (++objects_ > kMostObjects || !readHead(object, head)) return false;
    switch (head.kind) {
      case 0x0:  // nothing, booleans
        return true;
      case 0x1:  // integers, reals and dates: 2^count bytes
      case 0x2:
      case 0x3:
        return head.count <= 4 && take(head.at, std::uint64_t{1} << head.count);
      case 0x4:  // data
        return take(head.at, head.count);
      case 0x5:  // ASCII text
        return take(head.at, head.count) && isAscii(bytes_.substr(head.at, head.count));
      case 0x6:  // UTF-16 text
        return head.count <= bytes_.size() && take(head.at, 2 * head.count) &&
               hasNoZero(bytes_.substr(head.at, 2 * head.count));
      case 0x8:  // identifiers
        return take(head.at, head.count + 1);
      case 0xA:  // arrays, sets
      case 0xC:
        return visitAll(head.at, head.count);
      case 0xD:  // dictionaries: all keys, then all values
        return head.count <= bytes_.size() && visitAll(head.at, 2 * head.count);
      default:
        return false;
    }
  }

  bool visitAll(std::size_t at, std::uint64_t count) {
    if (++containers_ > kMostContainers || count > (table_ - at) / referenceSize_) return false;
    for (std::uint64_t i = 0; i < count; ++i, at += referenceSize_) {
      if (!visit(bigEndian(bytes_.substr(at, referenceSize_)))) return false;
    }
    return true;
  }

  // The parser's texts end at a zero, and it ends the process when a text has one inside.

  static bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) > 0; });
  }

  static bool hasNoZero(std::string_view units) {
    for (std::size_t at = 0; at < units.size(); at += 2) {
      if (units[at] == 0 && units[at + 1] == 0) return false;
    }
    return true;
  }

  bool take(std::size_t at, std::uint64_t count) {
    if (count > table_ - at) return false;
    expanded_ += static_cast<std::size_t>(count);
    return expanded_ <= kMostExpandedBytes;
  }

  std::string_view bytes_;
  std::size_t offsetSize_ = 0, referenceSize_ = 0, table_ = 0;
  std::uint64_t objectCount_ = 0;
  std::size_t containers_ = 0, objects_ = 0, expanded_ = 0;
};

std::size_t occurrences(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const auto begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

bool isInteger(std::string_view text) {
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
    base = 16;
  }
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  return error == std::errc() && end == text.data() + text.size();
}

bool isReal(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error != std::errc::invalid_argument && end == text.data() + text.size();
}

bool isDate(std::string_view text) {
  constexpr std::string_view kPattern = "0000-00-00T00:00:00Z";
  return text.size() == kPattern.size() &&
         std::equal(text.begin(), text.end(), kPattern.begin(),
                    [](char c, char wanted) { return wanted == '0' ? c >= '0' && c <= '9' : c == wanted; });
}

/// Whether the words between the tags of every element of that name pass the test.
bool everyElement(std::string_view text, std::string_view tag, bool (*isGood)(std::string_view)) {
  for (auto at = text.find(tag); at != std::string_view::npos; at = text.find(tag, at)) {
    at += tag.size();
    const auto end = text.find('<', at);
    if (end == std::string_view::npos || !isGood(trimmed(text.substr(at, end - at)))) return false;
  }
  return true;
}

std::string utf8FromUtf16(std::string_view bytes, bool isBigEndian) {
  const auto unit = [&](std::size_t at) {
    const auto first = static_cast<unsigned char>(bytes[at]), second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char32_t>(isBigEndian ? first << 8 | second : second << 8 | first);
  };
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    char32_t character = unit(at);
    const bool isHigh = character >= 0xD800 && character < 0xDC00;
    if (isHigh && at + 3 < bytes.size() && unit(at + 2) >= 0xDC00 && unit(at + 2) < 0xE000) {
      character = 0x10000 + ((character - 0xD800) << 10U) + (unit(at + 2) - 0xDC00);
      at += 2;
    }
    utf8::append(text, character);
  }
  return text;
}

}  // namespace

bool isBinaryPropertyList(std::string_view bytes) { return bytes.starts_with(kBinaryMark); }

bool isBinaryWithinLimits(std::string_view bytes) {
  return bytes.size() <= kMostBytes && BinaryWalk(bytes).isWithinLimits();
}

std::optional<std::string> xmlAsUtf8(std::string_view bytes) {
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF", kBigMark = "\xFE\xFF", kLittleMark = "\xFF\xFE";
  if (bytes.starts_with(kBigMark)) return utf8FromUtf16(bytes.substr(2), true);
  if (bytes.starts_with(kLittleMark)) return utf8FromUtf16(bytes.substr(2), false);
  if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
  if (!utf8::isValid(bytes)) return std::nullopt;
  return std::string(bytes);
}

bool isXmlWithinLimits(std::string_view text) {
  // Neither as it is nor as the number of a character, which is never written with a zero at its front.
  if (text.find('\0') != std::string_view::npos || text.find("&#0") != std::string_view::npos ||
      text.find("&#x0") != std::string_view::npos || text.find("&#X0") != std::string_view::npos) {
    return false;
  }
  // The parser takes the end of the file for the end of everything that is open.
  if (text.find("<plist") != std::string_view::npos && !trimmed(text).ends_with("</plist>")) return false;
  return occurrences(text, "<dict") + occurrences(text, "<array") <= kMostContainers &&
         everyElement(text, "<integer>", isInteger) && everyElement(text, "<real>", isReal) &&
         everyElement(text, "<date>", isDate);
}

}  // namespace chatsum::platform::system
