#include "hosts/device/body/KeyedArchive.h"

#include <cstdint>

#include "platform/foundation/Utf8.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kTrailerLength = 32;
constexpr int kMostReferences = 8;  // root -> string object -> its characters, with room to spare

enum class Kind : std::uint8_t {
  kInteger = 0x1,
  kData = 0x4,
  kAscii = 0x5,
  kUtf16 = 0x6,
  kUtf8 = 0x7,
  kReference = 0x8,
  kArray = 0xA,
  kDictionary = 0xD,
};

// One object: its kind, how many elements it has, and where its content starts.
struct Object {
  Kind kind;
  std::uint64_t count;
  std::size_t content;
};

std::uint64_t bigEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (const char byte : bytes) value = (value << 8U) | static_cast<std::uint8_t>(byte);
  return value;
}

class PropertyList {
 public:
  static std::optional<PropertyList> open(std::string_view bytes) {
    if (bytes.substr(0, kBinaryPropertyListStart.size()) != kBinaryPropertyListStart) return std::nullopt;
    if (bytes.size() < kBinaryPropertyListStart.size() + kTrailerLength) return std::nullopt;
    const std::string_view trailer = bytes.substr(bytes.size() - kTrailerLength);
    PropertyList list;
    list.bytes_ = bytes.substr(0, bytes.size() - kTrailerLength);
    list.offsetWidth_ = static_cast<std::uint8_t>(trailer[6]);
    list.referenceWidth_ = static_cast<std::uint8_t>(trailer[7]);
    list.objectCount_ = bigEndian(trailer.substr(8, 8));
    list.top_ = bigEndian(trailer.substr(16, 8));
    list.offsetTable_ = bigEndian(trailer.substr(24, 8));
    const auto sane = [](unsigned width) { return width >= 1 && width <= 8; };
    if (!sane(list.offsetWidth_) || !sane(list.referenceWidth_)) return std::nullopt;
    if (list.offsetTable_ > list.bytes_.size()) return std::nullopt;
    if (list.objectCount_ > (list.bytes_.size() - list.offsetTable_) / list.offsetWidth_) return std::nullopt;
    return list;
  }

  [[nodiscard]] std::uint64_t top() const { return top_; }

  [[nodiscard]] std::optional<Object> object(std::uint64_t number) const {
    if (number >= objectCount_) return std::nullopt;
    const std::uint64_t offset =
        bigEndian(bytes_.substr(static_cast<std::size_t>(offsetTable_ + number * offsetWidth_), offsetWidth_));
    if (offset >= bytes_.size()) return std::nullopt;
    auto at = static_cast<std::size_t>(offset);
    const auto marker = static_cast<std::uint8_t>(bytes_[at++]);
    Object object{static_cast<Kind>(marker >> 4U), marker & 0x0FU, 0};
    if (object.kind == Kind::kReference) {
      ++object.count;  // the marker holds the number of bytes less one
    } else if (object.kind != Kind::kInteger && object.count == 0x0F && !readLongCount(at, object.count)) {
      return std::nullopt;
    }
    object.content = at;
    const std::uint64_t width = elementWidth(object.kind);
    if (width == 0 || object.count > (bytes_.size() - at) / width) return std::nullopt;
    return object;
  }

  /// The object number that stands under `key` in a dictionary.
  [[nodiscard]] std::optional<std::uint64_t> valueFor(const Object& dictionary, std::string_view key) const {
    if (dictionary.kind != Kind::kDictionary) return std::nullopt;
    for (std::uint64_t i = 0; i < dictionary.count; ++i) {
      const auto found = object(reference(dictionary, i));
      if (found && found->kind == Kind::kAscii && content(*found) == key) {
        return reference(dictionary, dictionary.count + i);
      }
    }
    return std::nullopt;
  }

  [[nodiscard]] std::optional<std::uint64_t> elementOf(const Object& array, std::uint64_t position) const {
    if (array.kind != Kind::kArray || position >= array.count) return std::nullopt;
    return reference(array, position);
  }

  [[nodiscard]] std::uint64_t archiveReference(const Object& object) const {
    return bigEndian(bytes_.substr(object.content, static_cast<std::size_t>(object.count)));
  }

  /// The characters of a string (or of data that holds UTF-8).
  [[nodiscard]] std::optional<ArchivedText> text(const Object& object) const {
    ArchivedText result;
    switch (object.kind) {
      case Kind::kAscii:
      case Kind::kUtf8:
      case Kind::kData:
        result.replacedSequences = utf8::appendRepaired(result.text, content(object));
        return result;
      case Kind::kUtf16:
        result.replacedSequences = appendUtf16(result.text, content(object));
        return result;
      default:
        return std::nullopt;
    }
  }

 private:
  [[nodiscard]] bool readLongCount(std::size_t& at, std::uint64_t& count) const {
    if (at >= bytes_.size()) return false;
    const auto marker = static_cast<std::uint8_t>(bytes_[at++]);
    if (static_cast<Kind>(marker >> 4U) != Kind::kInteger || (marker & 0x0FU) > 3) return false;
    const std::size_t width = std::size_t{1} << (marker & 0x0FU);
    if (width > bytes_.size() - at) return false;
    count = bigEndian(bytes_.substr(at, width));
    at += width;
    return true;
  }

  [[nodiscard]] std::uint64_t elementWidth(Kind kind) const {
    switch (kind) {
      case Kind::kData:
      case Kind::kAscii:
      case Kind::kUtf8:
      case Kind::kReference:
        return 1;
      case Kind::kUtf16:
        return 2;
      case Kind::kArray:
        return referenceWidth_;
      case Kind::kDictionary:
        return 2ULL * referenceWidth_;
      default:
        return 0;
    }
  }

  // Only for positions that object() has found to lie inside the list.
  [[nodiscard]] std::uint64_t reference(const Object& container, std::uint64_t position) const {
    const auto at = static_cast<std::size_t>(container.content + position * referenceWidth_);
    return bigEndian(bytes_.substr(at, referenceWidth_));
  }

  [[nodiscard]] std::string_view content(const Object& object) const {
    return bytes_.substr(object.content, static_cast<std::size_t>(object.count * elementWidth(object.kind)));
  }

  static int appendUtf16(std::string& text, std::string_view bytes) {
    int replaced = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
      auto unit = static_cast<char32_t>(bigEndian(bytes.substr(i, 2)));
      if (unit >= 0xD800 && unit <= 0xDFFF) {
        const bool paired = unit <= 0xDBFF && i + 3 < bytes.size();
        const auto next = paired ? static_cast<char32_t>(bigEndian(bytes.substr(i + 2, 2))) : char32_t{0};
        if (next >= 0xDC00 && next <= 0xDFFF) {
          unit = 0x10000 + ((unit - 0xD800) << 10U) + (next - 0xDC00);
          i += 2;
        } else {
          ++replaced;  // utf8::append writes U+FFFD for a lone surrogate
        }
      }
      utf8::append(text, unit);
    }
    return replaced;
  }

  std::string_view bytes_;
  unsigned offsetWidth_ = 0;
  unsigned referenceWidth_ = 0;
  std::uint64_t objectCount_ = 0;
  std::uint64_t top_ = 0;
  std::uint64_t offsetTable_ = 0;
};

}  // namespace

std::optional<ArchivedText> readKeyedArchive(std::string_view blob) {
  const auto list = PropertyList::open(blob);
  if (!list) return std::nullopt;
  const auto objectUnder = [&list](const std::optional<Object>& dictionary, std::string_view key) {
    const auto number = dictionary ? list->valueFor(*dictionary, key) : std::nullopt;
    return number ? list->object(*number) : std::nullopt;
  };
  const auto archive = list->object(list->top());
  const auto objects = objectUnder(archive, "$objects");
  auto current = objectUnder(objectUnder(archive, "$top"), "root");
  for (int hop = 0; objects && current && hop < kMostReferences; ++hop) {
    if (current->kind == Kind::kReference) {
      const auto number = list->elementOf(*objects, list->archiveReference(*current));
      current = number ? list->object(*number) : std::nullopt;
    } else if (current->kind == Kind::kDictionary) {
      auto inner = objectUnder(current, "NS.string");
      if (!inner) inner = objectUnder(current, "NSString");
      if (!inner) inner = objectUnder(current, "NS.bytes");
      current = inner;
    } else {
      return list->text(*current);
    }
  }
  return std::nullopt;
}

}  // namespace chatsum::device
