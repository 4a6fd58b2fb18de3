#include "platform/system/images/formats/Exif.h"

#include <cstddef>
#include <optional>

namespace chatsum::platform::system {
namespace {

constexpr std::uint32_t kOrientation = 0x0112, kThumbnailOffset = 0x0201, kThumbnailLength = 0x0202;
constexpr std::uint32_t kShort = 3, kLong = 4;
constexpr std::size_t kEntryBytes = 12;
constexpr std::uint32_t kMostEntries = 1000;

/// Numbers of the data's byte order; 0 for what lies outside.
class Numbers {
 public:
  Numbers(std::string_view data, bool isBig) : data_(data), isBig_(isBig) {}
  [[nodiscard]] std::uint32_t of16(std::size_t place) const { return number(place, 2); }
  [[nodiscard]] std::uint32_t of32(std::size_t place) const { return number(place, 4); }

 private:
  [[nodiscard]] std::uint32_t number(std::size_t place, std::size_t bytes) const {
    if (place > data_.size() || data_.size() - place < bytes) return 0;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
      value = value << 8 | static_cast<unsigned char>(data_[place + (isBig_ ? i : bytes - 1 - i)]);
    }
    return value;
  }

  std::string_view data_;
  bool isBig_;
};

std::optional<std::uint32_t> find(const Numbers& numbers, std::size_t directory, std::uint32_t entries,
                                  std::uint32_t tag) {
  for (std::uint32_t i = 0; i < entries; ++i) {
    const std::size_t entry = directory + 2 + i * kEntryBytes;
    if (numbers.of16(entry) != tag) continue;
    const std::uint32_t type = numbers.of16(entry + 2);
    if (type == kShort) return numbers.of16(entry + 8);
    if (type == kLong) return numbers.of32(entry + 8);
  }
  return std::nullopt;
}

}  // namespace

ExifFacts readExif(std::string_view data) {
  ExifFacts facts;
  const bool isBig = data.starts_with(std::string_view("MM\0*", 4));
  if (!isBig && !data.starts_with(std::string_view("II*\0", 4))) return facts;
  const Numbers numbers(data, isBig);

  const std::size_t first = numbers.of32(4);
  const std::uint32_t entries = numbers.of16(first);
  if (first < 8 || entries > kMostEntries) return facts;
  facts.orientation = Orientation::ofTag(find(numbers, first, entries, kOrientation).value_or(1));

  const std::size_t second = numbers.of32(first + 2 + entries * kEntryBytes);
  const std::uint32_t secondEntries = numbers.of16(second);
  if (second < 8 || secondEntries > kMostEntries) return facts;
  const std::uint32_t offset = find(numbers, second, secondEntries, kThumbnailOffset).value_or(0);
  const std::uint32_t length = find(numbers, second, secondEntries, kThumbnailLength).value_or(0);
  if (offset == 0 || length == 0 || offset > data.size() || length > data.size() - offset) return facts;
  facts.thumbnailOffset = offset;
  facts.thumbnailLength = length;
  return facts;
}

}  // namespace chatsum::platform::system
