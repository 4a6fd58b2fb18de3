// Windows bitmaps of 1, 4, 8, 16, 24 and 32 bits a pixel, as their documentation describes BITMAPCOREHEADER to
// BITMAPV5HEADER. Run-length encoded ones are refused: phones do not send them.

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/system/images/formats/PictureCodec.h"

namespace chatsum::platform::system {
namespace {

constexpr std::size_t kFileHeader = 14, kCoreHeader = 12, kInfoHeader = 40, kMostHeader = 124;
constexpr unsigned kPlain = 0, kBitFields = 3, kAlphaBitFields = 6;

unsigned little(std::string_view bytes, std::size_t place, std::size_t count) {
  if (place + count > bytes.size()) return 0;
  unsigned value = 0;
  for (std::size_t i = count; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[place + i]);
  return value;
}

bool recognizes(std::string_view first) {
  return first.size() > kFileHeader + 4 && first.starts_with("BM") &&
         (little(first, kFileHeader, 4) == kCoreHeader || little(first, kFileHeader, 4) >= kInfoHeader);
}

/// One channel inside a pixel's bits.
struct Channel {
  unsigned mask = 0;
  [[nodiscard]] std::uint8_t of(unsigned pixel) const {
    if (mask == 0) return 0;
    const unsigned most = mask >> std::countr_zero(mask);
    const std::uint64_t value = (pixel & mask) >> std::countr_zero(mask);
    return static_cast<std::uint8_t>(value * 255 / most);
  }
};

struct Layout {
  PixelSize size;
  bool isTopDown = false;
  unsigned bits = 0;
  std::uint64_t pixels = 0, rowBytes = 0;
  Channel red, green, blue, alpha;
  std::array<std::array<std::uint8_t, 4>, 256> palette{};
};

/// Masks of the pixels that carry their colours themselves. False for unknown ones.
bool readMasks(std::string_view header, unsigned compression, Layout& layout) {
  if (compression == kBitFields || compression == kAlphaBitFields) {
    constexpr std::size_t kMasks = kFileHeader + kInfoHeader;
    const std::size_t headerBytes = little(header, kFileHeader, 4);
    layout.red.mask = little(header, kMasks, 4);
    layout.green.mask = little(header, kMasks + 4, 4);
    layout.blue.mask = little(header, kMasks + 8, 4);
    const bool hasAlpha = compression == kAlphaBitFields || headerBytes >= kInfoHeader + 16;
    if (hasAlpha) layout.alpha.mask = little(header, kMasks + 12, 4);
    return layout.bits == 16 || layout.bits == 32;
  }
  if (layout.bits == 16) {
    layout.red.mask = 0x7C00;
    layout.green.mask = 0x03E0;
    layout.blue.mask = 0x001F;
  } else {
    layout.red.mask = 0xFF0000;
    layout.green.mask = 0x00FF00;
    layout.blue.mask = 0x0000FF;
  }
  return compression == kPlain;
}

std::optional<Layout> readLayout(PictureBytes& bytes) {
  const std::string header = bytes.part(0, kFileHeader + kMostHeader);
  const std::size_t headerBytes = little(header, kFileHeader, 4);
  const bool isCore = headerBytes == kCoreHeader;
  if (header.size() < kFileHeader + (isCore ? kCoreHeader : kInfoHeader)) return std::nullopt;

  Layout layout;
  unsigned compression = kPlain, colors = 0;
  if (isCore) {
    layout.size = {static_cast<int>(little(header, 18, 2)), static_cast<int>(little(header, 20, 2))};
    layout.bits = little(header, 24, 2);
  } else {
    auto height = static_cast<std::int32_t>(little(header, 22, 4));
    layout.isTopDown = height < 0;
    if (height < -limits::kPictureSide) return std::nullopt;
    if (layout.isTopDown) height = -height;
    layout.size = {static_cast<int>(little(header, 18, 4)), height};
    layout.bits = little(header, 28, 2);
    compression = little(header, 30, 4);
    colors = little(header, 46, 4);
  }
  if (!layout.size.isAllowed()) return std::nullopt;
  constexpr std::array kDepths = {1U, 4U, 8U, 16U, 24U, 32U};
  if (std::find(kDepths.begin(), kDepths.end(), layout.bits) == kDepths.end()) return std::nullopt;
  if (!readMasks(header, compression, layout)) return std::nullopt;

  layout.pixels = little(header, 10, 4);
  layout.rowBytes = (static_cast<std::uint64_t>(layout.size.width) * layout.bits + 31) / 32 * 4;
  if (layout.bits <= 8) {
    const std::size_t most = std::size_t{1} << layout.bits;
    const std::size_t count = colors == 0 ? most : std::min<std::size_t>(colors, most);
    const std::size_t entryBytes = isCore ? 3 : 4;
    const std::string table = bytes.part(kFileHeader + headerBytes, count * entryBytes);
    layout.palette.fill({0, 0, 0, 255});
    for (std::size_t i = 0; (i + 1) * entryBytes <= table.size(); ++i) {
      const auto channel = [&](std::size_t place) { return static_cast<std::uint8_t>(table[i * entryBytes + place]); };
      layout.palette[i] = {channel(2), channel(1), channel(0), 255};
    }
  }
  return layout;
}

std::optional<PictureHeader> readHeader(PictureBytes& bytes) {
  const auto layout = readLayout(bytes);
  if (!layout) return std::nullopt;
  return PictureHeader{.size = layout->size, .orientation = {}};
}

void expandRow(const Layout& layout, std::string_view stored, std::vector<std::uint8_t>& row) {
  const std::size_t width = row.size() / 4;
  for (std::size_t x = 0; x < width; ++x) {
    std::uint8_t* pixel = row.data() + x * 4;
    if (layout.bits <= 8) {
      const std::size_t bit = x * layout.bits;
      const unsigned shift = 8 - layout.bits - static_cast<unsigned>(bit % 8);
      const unsigned index = static_cast<unsigned char>(stored[bit / 8]) >> shift & ((1U << layout.bits) - 1);
      std::copy_n(layout.palette[index].begin(), 4, pixel);
      continue;
    }
    const std::size_t bytes = layout.bits / 8;
    const unsigned value = little(stored, x * bytes, bytes);
    pixel[0] = layout.red.of(value);
    pixel[1] = layout.green.of(value);
    pixel[2] = layout.blue.of(value);
    pixel[3] = layout.alpha.mask == 0 ? std::uint8_t{255} : layout.alpha.of(value);
  }
}

bool decode(PictureBytes& bytes, const PictureHeader& header, PictureReducer& reducer) {
  const auto layout = readLayout(bytes);
  if (!layout || layout->size != header.size) return false;
  std::vector<std::uint8_t> row(static_cast<std::size_t>(layout->size.width) * 4);
  std::vector<char> stored(static_cast<std::size_t>(layout->rowBytes));
  reducer.begin(layout->size);
  for (int y = 0; y < layout->size.height; ++y) {
    const auto place = static_cast<std::uint64_t>(layout->isTopDown ? y : layout->size.height - 1 - y);
    if (bytes.read(layout->pixels + place * layout->rowBytes, stored.data(), stored.size()) != stored.size()) {
      return false;
    }
    expandRow(*layout, {stored.data(), stored.size()}, row);
    reducer.addRow(row.data());
  }
  return true;
}

}  // namespace

const PictureCodec kBmpCodec = {recognizes, readHeader, decode};

}  // namespace chatsum::platform::system
