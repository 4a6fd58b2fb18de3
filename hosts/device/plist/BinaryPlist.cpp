#include "hosts/device/plist/BinaryPlist.h"

#include <bit>

#include "platform/foundation/Utf8.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kStart = "bplist00";
constexpr std::size_t kTrailerLength = 32;

std::uint64_t bigEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (const char byte : bytes) value = value << 8U | static_cast<std::uint8_t>(byte);
  return value;
}

void appendUtf16(std::string& text, std::string_view bytes) {
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    auto unit = static_cast<char32_t>(bigEndian(bytes.substr(at, 2)));
    if (unit >= 0xD800 && unit < 0xDC00 && at + 3 < bytes.size()) {
      const auto low = static_cast<char32_t>(bigEndian(bytes.substr(at + 2, 2)));
      if (low >= 0xDC00 && low < 0xE000) {
        unit = 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00);
        at += 2;
      }
    }
    utf8::append(text, unit);  // a lone surrogate becomes U+FFFD
  }
}

/// Goes down from the top object. Shared objects are read at each place, which the counts bound; so they end circles.
class BinaryReader {
 public:
  static std::optional<PlistValue> read(std::string_view bytes) {
    if (!bytes.starts_with(kStart) || bytes.size() < kStart.size() + kTrailerLength) return std::nullopt;
    BinaryReader reader;
    const std::string_view trailer = bytes.substr(bytes.size() - kTrailerLength);
    reader.offsetWidth_ = static_cast<std::uint8_t>(trailer[6]);
    reader.referenceWidth_ = static_cast<std::uint8_t>(trailer[7]);
    reader.objectCount_ = bigEndian(trailer.substr(8, 8));
    const std::uint64_t top = bigEndian(trailer.substr(16, 8)), table = bigEndian(trailer.substr(24, 8));
    bytes.remove_suffix(kTrailerLength);
    const auto isWidth = [](std::size_t width) { return width >= 1 && width <= 8; };
    if (!isWidth(reader.offsetWidth_) || !isWidth(reader.referenceWidth_) || table > bytes.size()) return std::nullopt;
    reader.content_ = bytes.substr(0, static_cast<std::size_t>(table));
    reader.table_ = bytes.substr(static_cast<std::size_t>(table));
    if (reader.objectCount_ > reader.table_.size() / reader.offsetWidth_) return std::nullopt;
    PlistValue value;
    if (!reader.object(top, 0, value)) return std::nullopt;
    return value;
  }

 private:
  bool object(std::uint64_t number, int depth, PlistValue& value) {
    if (++values_ > plist::kMostValues || depth > plist::kDeepest || number >= objectCount_) return false;
    const std::uint64_t offset =
        bigEndian(table_.substr(static_cast<std::size_t>(number) * offsetWidth_, offsetWidth_));
    if (offset >= content_.size()) return false;
    std::string_view rest = content_.substr(static_cast<std::size_t>(offset));
    const auto marker = static_cast<std::uint8_t>(rest.front());
    rest.remove_prefix(1);
    const unsigned kind = marker >> 4U;
    std::uint64_t count = marker & 0xFU;
    switch (kind) {
      case 0x0:
        if (count == 8 || count == 9) value = PlistValue(count == 9);
        return true;  // anything else is nothing
      case 0x1:
        return integer(rest, count, value);
      case 0x2:
      case 0x3:
        return real(rest, count, kind == 0x3, value);
      case 0x8:
        if (count + 1 > rest.size() || count > 7) return false;
        value = PlistValue(PlistValue::Reference{bigEndian(rest.substr(0, count + 1))});
        return true;
      default:
        break;
    }
    if (count == 0xF && !longCount(rest, count)) return false;
    switch (kind) {
      case 0x4:
        if (!take(rest, count)) return false;
        value = PlistValue(PlistValue::Data{std::string(rest)});
        return true;
      case 0x5:
      case 0x7:
        if (!take(rest, count)) return false;
        value = PlistValue(utf8::repaired(rest));
        return true;
      case 0x6: {
        if (count > rest.size() || !take(rest, 2 * count)) return false;
        std::string text;
        appendUtf16(text, rest);
        value = PlistValue(std::move(text));
        return true;
      }
      case 0xA:
      case 0xB:
      case 0xC:
        return array(rest, count, depth, value);
      case 0xD:
        return dictionary(rest, count, depth, value);
      default:
        return false;
    }
  }

  static bool longCount(std::string_view& rest, std::uint64_t& count) {
    if (rest.empty()) return false;
    const auto marker = static_cast<std::uint8_t>(rest.front());
    if (marker >> 4U != 0x1 || (marker & 0xFU) > 3) return false;
    const std::size_t width = std::size_t{1} << (marker & 0xFU);
    rest.remove_prefix(1);
    if (rest.size() < width) return false;
    count = bigEndian(rest.substr(0, width));
    rest.remove_prefix(width);
    return true;
  }

  static bool integer(std::string_view rest, std::uint64_t power, PlistValue& value) {
    if (power > 4) return false;
    const std::size_t width = std::size_t{1} << power;
    if (rest.size() < width) return false;
    // 16 bytes hold unsigned numbers that pass the 8 of signed ones; their lower half is what they are used for.
    const std::string_view bytes = rest.substr(width > 8 ? 8 : 0, width > 8 ? 8 : width);
    value = PlistValue(static_cast<std::int64_t>(bigEndian(bytes)));
    return true;
  }

  static bool real(std::string_view rest, std::uint64_t power, bool isDate, PlistValue& value) {
    const std::size_t width = std::size_t{1} << power;
    if ((power != 2 && power != 3) || rest.size() < width) return false;
    const std::uint64_t bits = bigEndian(rest.substr(0, width));
    const double number = width == 8 ? std::bit_cast<double>(bits)
                                     : static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    if (isDate) {
      value = PlistValue(Date{number + static_cast<double>(kSecondsFrom1970To2001)});
    } else {
      value = PlistValue(number);
    }
    return true;
  }

  bool take(std::string_view& rest, std::uint64_t length) {
    if (length > rest.size()) return false;
    rest = rest.substr(0, static_cast<std::size_t>(length));
    bytes_ += rest.size();
    return bytes_ <= plist::kMostBytes;
  }

  bool array(std::string_view rest, std::uint64_t count, int depth, PlistValue& value) {
    if (count > rest.size() / referenceWidth_ || count > plist::kMostValues) return false;
    PlistValue::Items items(static_cast<std::size_t>(count));
    for (PlistValue& item : items) {
      if (!object(reference(rest), depth + 1, item)) return false;
    }
    value = PlistValue(std::move(items));
    return true;
  }

  bool dictionary(std::string_view rest, std::uint64_t count, int depth, PlistValue& value) {
    if (count > rest.size() / referenceWidth_ / 2 || count > plist::kMostValues) return false;
    PlistValue::Entries entries(static_cast<std::size_t>(count));
    for (PlistValue::Entry& entry : entries) {
      PlistValue key;
      if (!object(reference(rest), depth + 1, key) || !key.asString()) return false;
      entry.key = *key.asString();
    }
    for (PlistValue::Entry& entry : entries) {
      if (!object(reference(rest), depth + 1, entry.value)) return false;
    }
    value = PlistValue(std::move(entries));
    return true;
  }

  std::uint64_t reference(std::string_view& rest) const {
    const std::uint64_t number = bigEndian(rest.substr(0, referenceWidth_));
    rest.remove_prefix(referenceWidth_);
    return number;
  }

  std::string_view content_, table_;
  std::size_t offsetWidth_ = 0, referenceWidth_ = 0;
  std::uint64_t objectCount_ = 0;
  std::size_t values_ = 0, bytes_ = 0;
};

}  // namespace

std::optional<PlistValue> parseBinaryPlist(std::string_view bytes) {
  if (bytes.size() > plist::kMostBytes) return std::nullopt;
  return BinaryReader::read(bytes);
}

}  // namespace chatsum::device
