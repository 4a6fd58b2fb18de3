#include <webp/decode.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "platform/system/images/PictureLimits.h"
#include "platform/system/images/formats/Exif.h"
#include "platform/system/images/formats/PictureCodec.h"

namespace chatsum::platform::system {
namespace {

constexpr std::size_t kRiffHeader = 12, kChunkHeader = 8, kFrameHeader = 16;
constexpr unsigned kHasExif = 0x08, kIsAnimated = 0x02;
constexpr std::size_t kMostExifBytes = std::size_t{64} << 10;

unsigned little(std::string_view bytes, std::size_t place, std::size_t count) {
  unsigned value = 0;
  for (std::size_t i = count; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[place + i]);
  return value;
}

bool recognizes(std::string_view first) {
  return first.size() > kRiffHeader && first.starts_with("RIFF") && first.substr(8).starts_with("WEBP");
}

/// Where things stand in the file.
struct Layout {
  PixelSize canvas;
  Orientation orientation;
  /// The first frame's bitstream with its alpha, and where the frame lies on the canvas.
  std::uint64_t frameOffset = 0, frameLength = 0;
  int left = 0, top = 0;
};

/// Walks over the chunks; a plain file is one frame that fills its canvas.
std::optional<Layout> readLayout(PictureBytes& bytes) {
  Layout layout;
  unsigned flags = 0;
  std::uint64_t place = kRiffHeader;
  for (int parts = 0; parts < limits::kParts; ++parts) {
    const std::string chunk = bytes.part(place, kChunkHeader + kFrameHeader + 32);
    if (chunk.size() < kChunkHeader) break;
    const std::string_view type = std::string_view(chunk).substr(0, 4);
    const std::uint64_t length = little(chunk, 4, 4);
    const std::uint64_t content = place + kChunkHeader;
    const std::string_view start = std::string_view(chunk).substr(kChunkHeader);
    if (type == "VP8X" && start.size() >= 10) {
      flags = little(start, 0, 1);
      layout.canvas = {static_cast<int>(little(start, 4, 3)) + 1, static_cast<int>(little(start, 7, 3)) + 1};
    } else if (type == "ANMF" && start.size() >= kFrameHeader && length >= kFrameHeader && layout.frameLength == 0) {
      layout.left = static_cast<int>(little(start, 0, 3)) * 2;
      layout.top = static_cast<int>(little(start, 3, 3)) * 2;
      layout.frameOffset = content + kFrameHeader;
      layout.frameLength = length - kFrameHeader;
    } else if ((type == "VP8 " || type == "VP8L" || type == "ALPH") && layout.frameLength == 0) {
      layout.frameOffset = place;
      layout.frameLength = bytes.size() - place;
      if ((flags & kHasExif) == 0) break;
    } else if (type == "EXIF" && length <= kMostExifBytes) {
      std::string exif = bytes.part(content, static_cast<std::size_t>(length));
      if (exif.starts_with(std::string_view("Exif\0\0", 6))) exif.erase(0, 6);
      layout.orientation = orientationIn(exif);
      break;
    }
    if (layout.frameLength > 0 && (flags & (kHasExif | kIsAnimated)) == kIsAnimated) break;
    place = content + length + length % 2;
  }
  if (layout.frameLength == 0) return std::nullopt;
  return layout;
}

std::optional<WebPBitstreamFeatures> featuresOf(std::string_view bytes) {
  WebPBitstreamFeatures features;
  if (WebPGetFeatures(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), &features) != VP8_STATUS_OK) {
    return std::nullopt;
  }
  return features;
}

std::optional<PictureHeader> readHeader(PictureBytes& bytes) {
  auto layout = readLayout(bytes);
  if (!layout) return std::nullopt;
  if (layout->canvas.isEmpty()) {
    const auto features = featuresOf(bytes.part(0, 64));
    if (!features) return std::nullopt;
    layout->canvas = {features->width, features->height};
  }
  return PictureHeader{.size = layout->canvas, .orientation = layout->orientation};
}

/// The decoder scales while it decodes, so what comes out is small.
struct Scaled {
  WebPDecoderConfig config{};
  Scaled() { WebPInitDecoderConfig(&config); }
  Scaled(const Scaled&) = delete;
  Scaled& operator=(const Scaled&) = delete;
  ~Scaled() { WebPFreeDecBuffer(&config.output); }

  bool decode(std::string_view frame, PixelSize size) {
    config.options.use_scaling = 1;
    config.options.scaled_width = size.width;
    config.options.scaled_height = size.height;
    config.output.colorspace = MODE_RGBA;
    return WebPDecode(reinterpret_cast<const std::uint8_t*>(frame.data()), frame.size(), &config) == VP8_STATUS_OK;
  }
  [[nodiscard]] const std::uint8_t* row(int y) const {
    return config.output.u.RGBA.rgba + static_cast<std::ptrdiff_t>(y) * config.output.u.RGBA.stride;
  }
};

/// The canvas at a half, a quarter … of its size, as small as is enough.
PixelSize smallestEnough(PixelSize canvas, const PictureReducer& reducer) {
  PixelSize size = canvas;
  for (int part = 2; part <= 64; part *= 2) {
    const PixelSize smaller{canvas.width / part, canvas.height / part};
    if (smaller.isEmpty() || !reducer.isEnough(smaller)) break;
    size = smaller;
  }
  return size;
}

bool decode(PictureBytes& bytes, const PictureHeader& header, PictureReducer& reducer) {
  const auto layout = readLayout(bytes);
  if (!layout) return false;
  const std::string content = bytes.part(layout->frameOffset, static_cast<std::size_t>(layout->frameLength));
  const auto features = featuresOf(content);
  constexpr int kLossless = 2;
  if (!features || content.size() != layout->frameLength) return false;
  const PixelSize frame{features->width, features->height};
  if (!frame.isAllowed() || (features->format == kLossless && frame.pixels() > limits::kWholePixels)) return false;

  Scaled scaled;
  if (frame == header.size) {
    const PixelSize size = smallestEnough(frame, reducer);
    if (!scaled.decode(content, size)) return false;
    reducer.begin(size);
    for (int y = 0; y < size.height; ++y) reducer.addRow(scaled.row(y));
    return true;
  }
  // A frame that is a part of its canvas is decoded in full and laid on it.
  if (frame.pixels() > limits::kWholePixels || !scaled.decode(content, frame)) return false;
  std::vector<std::uint8_t> row(static_cast<std::size_t>(header.size.width) * 4);
  const int visible = std::clamp(header.size.width - layout->left, 0, frame.width);
  reducer.begin(header.size);
  for (int y = 0; y < header.size.height; ++y) {
    std::fill(row.begin(), row.end(), std::uint8_t{0});
    if (visible > 0 && y >= layout->top && y < layout->top + frame.height) {
      std::memcpy(row.data() + static_cast<std::size_t>(layout->left) * 4, scaled.row(y - layout->top),
                  static_cast<std::size_t>(visible) * 4);
    }
    reducer.addRow(row.data());
  }
  return true;
}

}  // namespace

const PictureCodec kWebPCodec = {recognizes, readHeader, decode};

}  // namespace chatsum::platform::system
