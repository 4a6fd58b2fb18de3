#include "platform/system/images/formats/Exif.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace chatsum::platform::system {
namespace {

constexpr std::uint32_t kOrientation = 0x0112;
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

Orientation orientationIn(std::string_view exif) {
  const bool isBig = exif.starts_with(std::string_view("MM\0*", 4));
  if (!isBig && !exif.starts_with(std::string_view("II*\0", 4))) return {};
  const Numbers numbers(exif, isBig);
  const std::size_t directory = numbers.of32(4);
  const std::uint32_t entries = numbers.of16(directory);
  if (directory < 8 || entries > kMostEntries) return {};
  return Orientation::ofTag(find(numbers, directory, entries, kOrientation).value_or(1));
}

}  // namespace chatsum::platform::system
