#include "platform/system/pdf/PdfImage.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "platform/system/pdf/Deflate.h"
#include "platform/system/pdf/JpegEncoder.h"
#include "platform/system/pdf/PdfSyntax.h"

namespace chatsum::platform::system {
namespace {

/// Samples of a byte each, some channels a pixel, with the colour space that reads them.
struct Samples {
  std::string colorSpace;
  std::string bytes;
  int channels = 1;
};

Samples channelsOf(const Bitmap& bitmap, std::string colorSpace, int first, int channels) {
  Samples made{std::move(colorSpace), {}, channels};
  made.bytes.reserve(bitmap.rgba.size() / 4 * static_cast<std::size_t>(channels));
  for (std::size_t at = static_cast<std::size_t>(first); at < bitmap.rgba.size(); at += 4) {
    made.bytes.append(reinterpret_cast<const char*>(bitmap.rgba.data() + at), static_cast<std::size_t>(channels));
  }
  return made;
}

/// The colour of a pixel as one number; that of an invisible one does not count.
std::uint32_t colorOf(const std::uint8_t* pixel) {
  if (pixel[3] == 0) return 0;
  return static_cast<std::uint32_t>(pixel[0]) << 16 | static_cast<std::uint32_t>(pixel[1]) << 8 | pixel[2];
}

/// Numbers of a table of colours, when there are few.
std::optional<Samples> indexed(const Bitmap& bitmap) {
  constexpr std::size_t kMostColors = 256;
  std::unordered_map<std::uint32_t, char> numbers;
  std::string table, bytes;
  bytes.reserve(bitmap.rgba.size() / 4);
  std::uint32_t lastColor = 0;
  char lastNumber = 0;
  for (std::size_t at = 0; at < bitmap.rgba.size(); at += 4) {
    const std::uint32_t color = colorOf(&bitmap.rgba[at]);
    if (at == 0 || color != lastColor) {
      const auto [place, isNew] = numbers.try_emplace(color, static_cast<char>(numbers.size()));
      if (isNew) {
        if (numbers.size() > kMostColors) return std::nullopt;
        for (const int shift : {16, 8, 0}) table += static_cast<char>((color >> shift) & 0xFF);
      }
      lastColor = color;
      lastNumber = place->second;
    }
    bytes += lastNumber;
  }
  std::string space = "[/Indexed/DeviceRGB " + std::to_string(numbers.size() - 1) + "(";
  pdf::appendLiteral(space, table);
  return Samples{space + ")]", std::move(bytes), 1};
}

bool isGray(const Bitmap& bitmap) {
  for (std::size_t at = 0; at < bitmap.rgba.size(); at += 4) {
    const std::uint8_t* pixel = &bitmap.rgba[at];
    if (pixel[3] != 0 && (pixel[0] != pixel[1] || pixel[1] != pixel[2])) return false;
  }
  return true;
}

std::uint8_t paeth(int left, int above, int corner) {
  const int guess = left + above - corner;
  const int toLeft = std::abs(guess - left), toAbove = std::abs(guess - above), toCorner = std::abs(guess - corner);
  if (toLeft <= toAbove && toLeft <= toCorner) return static_cast<std::uint8_t>(left);
  return static_cast<std::uint8_t>(toAbove <= toCorner ? above : corner);
}

/// Each row as what it differs from its neighbours by, in the way of PNG (RFC 2083, 6) that leaves the smallest
/// differences: what the pixel to the left says, the one above, or both.
std::string predicted(const Samples& samples, std::size_t width) {
  const std::size_t row = width * static_cast<std::size_t>(samples.channels);
  const auto step = static_cast<std::size_t>(samples.channels);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(samples.bytes.data());
  const std::string zeros(row, '\0');
  std::string made;
  made.reserve(samples.bytes.size() + samples.bytes.size() / row);
  std::string best, tried(row, '\0');
  for (std::size_t begin = 0; begin < samples.bytes.size(); begin += row) {
    const std::uint8_t* line = bytes + begin;
    const auto* above = begin == 0 ? reinterpret_cast<const std::uint8_t*>(zeros.data()) : line - row;
    long bestSum = -1;
    char bestKind = 0;
    for (const char kind : {'\1', '\2', '\4'}) {
      long sum = 0;
      for (std::size_t i = 0; i < row; ++i) {
        const int left = i < step ? 0 : line[i - step], corner = i < step ? 0 : above[i - step];
        const int guess = kind == '\1' ? left : kind == '\2' ? above[i] : paeth(left, above[i], corner);
        const auto difference = static_cast<std::int8_t>(line[i] - guess);
        tried[i] = static_cast<char>(difference);
        sum += std::abs(difference);
      }
      if (bestSum >= 0 && sum >= bestSum) continue;
      bestSum = sum;
      bestKind = kind;
      best = tried;
    }
    made += bestKind;
    made += best;
  }
  return made;
}

PdfStream imageStream(int number, const Bitmap& bitmap, const std::string& entries, std::string bytes) {
  return {number,
          "/Type/XObject/Subtype/Image/Width " + std::to_string(bitmap.width) + "/Height " +
              std::to_string(bitmap.height) + "/BitsPerComponent 8" + entries,
          std::move(bytes)};
}

PdfStream flateStream(int number, const Bitmap& bitmap, const Samples& samples, const std::string& entries) {
  std::string dictionary = "/ColorSpace" + samples.colorSpace + entries + "/Filter/FlateDecode";
  std::string bytes = deflated(samples.bytes);
  // Numbers of colours say nothing about each other.
  if (samples.colorSpace.front() == '/') {
    std::string other = deflated(predicted(samples, static_cast<std::size_t>(bitmap.width)));
    if (other.size() + 60 < bytes.size()) {
      bytes = std::move(other);
      dictionary += "/DecodeParms<</Predictor 15/Colors " + std::to_string(samples.channels) + "/Columns " +
                    std::to_string(bitmap.width) + ">>";
    }
  }
  return imageStream(number, bitmap, dictionary, std::move(bytes));
}

}  // namespace

bool hasTransparency(const Bitmap& bitmap) {
  for (std::size_t at = 3; at < bitmap.rgba.size(); at += 4) {
    if (bitmap.rgba[at] != 0xFF) return true;
  }
  return false;
}

std::vector<PdfStream> imageStreams(const Bitmap& bitmap, int number, int maskNumber) {
  // Below this, what surrounds the pixels of a JPEG weighs more than they do.
  constexpr std::size_t kSmall = 800;
  std::vector<PdfStream> made;
  const bool isTransparent = hasTransparency(bitmap);
  const std::string mask = isTransparent ? "/SMask " + pdf::reference(maskNumber) : "";
  if (isGray(bitmap)) {
    made.push_back(flateStream(number, bitmap, channelsOf(bitmap, "/DeviceGray", 0, 1), mask));
  } else if (const auto few = indexed(bitmap)) {
    made.push_back(flateStream(number, bitmap, *few, mask));
  } else {
    const Samples colors = channelsOf(bitmap, "/DeviceRGB", 0, 3);
    made.push_back(flateStream(number, bitmap, colors, mask));
    if (!isTransparent && made.back().bytes.size() > kSmall) {
      std::string jpeg = encodeJpeg(colors.bytes, bitmap.width, bitmap.height);
      if (!jpeg.empty() && jpeg.size() < made.back().bytes.size()) {
        made.back() = imageStream(number, bitmap, "/ColorSpace/DeviceRGB/Filter/DCTDecode", std::move(jpeg));
      }
    }
  }
  if (isTransparent) made.push_back(flateStream(maskNumber, bitmap, channelsOf(bitmap, "/DeviceGray", 3, 1), ""));
  return made;
}

}  // namespace chatsum::platform::system
