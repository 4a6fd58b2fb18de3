#include <tiffio.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "platform/system/images/PictureLimits.h"
#include "platform/system/images/formats/PictureCodec.h"

namespace chatsum::platform::system {
namespace {

bool recognizes(std::string_view first) {
  return first.starts_with(std::string_view("II*\0", 4)) || first.starts_with(std::string_view("MM\0*", 4)) ||
         first.starts_with(std::string_view("II+\0", 4)) || first.starts_with(std::string_view("MM\0+", 4));
}

/// The file as libtiff reads it.
struct Reading {
  PictureBytes& bytes;
  std::uint64_t place = 0;

  static tmsize_t read(thandle_t handle, void* out, tmsize_t count) {
    auto& reading = *static_cast<Reading*>(handle);
    if (count <= 0) return 0;
    const std::size_t got = reading.bytes.read(reading.place, out, static_cast<std::size_t>(count));
    reading.place += got;
    return static_cast<tmsize_t>(got);
  }
  static tmsize_t write(thandle_t, void*, tmsize_t) { return -1; }
  static toff_t seek(thandle_t handle, toff_t offset, int from) {
    auto& reading = *static_cast<Reading*>(handle);
    if (from == SEEK_CUR) offset += reading.place;
    if (from == SEEK_END) offset += reading.bytes.size();
    return reading.place = offset;
  }
  static int close(thandle_t) { return 0; }
  static toff_t size(thandle_t handle) { return static_cast<Reading*>(handle)->bytes.size(); }
};

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using Tiff = std::unique_ptr<TIFF, CloseTiff>;

/// The handlers of the file are silent; those of the process stay as they are.
Tiff openTiff(Reading& reading) {
  struct FreeOptions {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
  };
  const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
  if (!options) return nullptr;
  const TIFFErrorHandlerExtR silent = [](TIFF*, void*, const char*, const char*, va_list) { return 1; };
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), silent, nullptr);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), silent, nullptr);
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), limits::kDecoderBytes);
  // "m": not mapped into memory.
  return Tiff(TIFFClientOpenExt("", "rm", &reading, Reading::read, Reading::write, Reading::seek, Reading::close,
                                Reading::size, nullptr, nullptr, options.get()));
}

PixelSize sizeOf(TIFF* tiff) {
  std::uint32_t width = 0, height = 0;
  TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
  TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
  constexpr std::uint32_t kTooMuch = limits::kPictureSide + 1;
  return {static_cast<int>(std::min(width, kTooMuch)), static_cast<int>(std::min(height, kTooMuch))};
}

std::optional<PictureHeader> readHeader(PictureBytes& bytes) {
  Reading reading{bytes};
  const Tiff tiff = openTiff(reading);
  if (!tiff) return std::nullopt;
  std::uint16_t orientation = 1;
  TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_ORIENTATION, &orientation);
  return PictureHeader{.size = sizeOf(tiff.get()), .orientation = Orientation::ofTag(orientation)};
}

/// How many rows are stored as one block.
std::uint32_t rowsPerBlock(TIFF* tiff, PixelSize size) {
  std::uint32_t rows = 0;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_ROWSPERSTRIP, &rows);
  if (TIFFIsTiled(tiff)) TIFFGetField(tiff, TIFFTAG_TILELENGTH, &rows);
  return std::clamp(rows, 1U, static_cast<std::uint32_t>(size.height));
}

/// libtiff multiplies colours by alpha.
void undoAlpha(std::vector<std::uint32_t>& pixels, std::vector<std::uint8_t>& row, std::size_t begin) {
  for (std::size_t x = 0; x < row.size() / 4; ++x) {
    const std::uint32_t pixel = pixels[begin + x];
    const std::uint32_t alpha = TIFFGetA(pixel);
    const std::uint32_t color[3] = {TIFFGetR(pixel), TIFFGetG(pixel), TIFFGetB(pixel)};
    for (std::size_t i = 0; i < 3; ++i) {
      const std::uint32_t plain = alpha == 0 ? 0 : std::min((color[i] * 255 + alpha / 2) / alpha, 255U);
      row[x * 4 + i] = static_cast<std::uint8_t>(alpha == 255 ? color[i] : plain);
    }
    row[x * 4 + 3] = static_cast<std::uint8_t>(alpha);
  }
}

bool decode(PictureBytes& bytes, const PictureHeader& header, PictureReducer& reducer) {
  Reading reading{bytes};
  const Tiff tiff = openTiff(reading);
  if (!tiff || sizeOf(tiff.get()) != header.size) return false;
  char message[1024];
  if (!TIFFRGBAImageOK(tiff.get(), message)) return false;
  struct EndImage {
    void operator()(TIFFRGBAImage* image) const { TIFFRGBAImageEnd(image); }
  };
  TIFFRGBAImage image{};
  constexpr int kStopAtErrors = 1;
  if (!TIFFRGBAImageBegin(&image, tiff.get(), kStopAtErrors, message)) return false;
  const std::unique_ptr<TIFFRGBAImage, EndImage> end(&image);
  image.req_orientation = image.orientation;  // rows come as they are stored

  const std::uint32_t block = rowsPerBlock(tiff.get(), header.size);
  const auto width = static_cast<std::size_t>(header.size.width), height = static_cast<std::size_t>(header.size.height);
  if (width * block > static_cast<std::size_t>(limits::kWholePixels)) return false;
  std::vector<std::uint32_t> pixels(width * block);
  std::vector<std::uint8_t> row(width * 4);
  reducer.begin(header.size);
  for (std::size_t y = 0; y < height; y += block) {
    const std::size_t rows = std::min<std::size_t>(block, height - y);
    image.row_offset = static_cast<int>(y);
    if (!TIFFRGBAImageGet(&image, pixels.data(), static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(rows))) {
      return false;
    }
    for (std::size_t i = 0; i < rows; ++i) {
      undoAlpha(pixels, row, i * width);
      reducer.addRow(row.data());
    }
  }
  return true;
}

}  // namespace

const PictureCodec kTiffCodec = {recognizes, readHeader, decode};

}  // namespace chatsum::platform::system
