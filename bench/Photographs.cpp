#include "bench/Photographs.h"

#include <libheif/heif.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include <jpeglib.h>

namespace chatsum::bench {
namespace {

constexpr int kWidth = 4032, kHeight = 3024, kChannels = 3;

/// Soft colours with some grain, so that it compresses as photographs do.
std::vector<std::uint8_t> pixels(int width, int height) {
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * kChannels);
  std::vector<double> wave(static_cast<std::size_t>(width));
  for (int x = 0; x < width; ++x) wave[static_cast<std::size_t>(x)] = std::sin(9.0 * x / width);
  std::uint32_t random = 1;
  std::size_t at = 0;
  for (int y = 0; y < height; ++y) {
    const double light = 60.0 * std::cos(7.0 * y / height);
    for (int x = 0; x < width; ++x) {
      random = random * 1664525U + 1013904223U;
      const double level = 128 + light * wave[static_cast<std::size_t>(x)] + static_cast<double>(random >> 28U);
      for (int channel = 0; channel < kChannels; ++channel) {
        bytes[at++] = static_cast<std::uint8_t>(level + 12.0 * channel);
      }
    }
  }
  return bytes;
}

std::string jpegOf(int width, int height) {
  const std::vector<std::uint8_t> bytes = pixels(width, height);
  jpeg_compress_struct encoder{};
  jpeg_error_mgr errors{};
  encoder.err = jpeg_std_error(&errors);
  jpeg_create_compress(&encoder);
  unsigned char* result = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&encoder, &result, &size);
  encoder.image_width = static_cast<JDIMENSION>(width);
  encoder.image_height = static_cast<JDIMENSION>(height);
  encoder.input_components = kChannels;
  encoder.in_color_space = JCS_RGB;
  jpeg_set_defaults(&encoder);
  constexpr int kQuality = 85;
  jpeg_set_quality(&encoder, kQuality, TRUE);
  jpeg_start_compress(&encoder, TRUE);
  const std::size_t rowBytes = static_cast<std::size_t>(width) * kChannels;
  for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
    JSAMPROW row = const_cast<JSAMPROW>(bytes.data() + y * rowBytes);
    jpeg_write_scanlines(&encoder, &row, 1);
  }
  jpeg_finish_compress(&encoder);
  jpeg_destroy_compress(&encoder);
  const std::unique_ptr<unsigned char, decltype(&std::free)> owner(result, &std::free);
  return {reinterpret_cast<const char*>(result), size};
}

std::string number(std::uint64_t value, int bytes, bool bigEndian) {
  std::string text;
  for (int i = 0; i < bytes; ++i) {
    const int shift = 8 * (bigEndian ? bytes - 1 - i : i);
    text += static_cast<char>(static_cast<unsigned char>(value >> static_cast<unsigned>(shift)));
  }
  return text;
}

std::string little(std::uint64_t value, int bytes) { return number(value, bytes, false); }
std::string big(std::uint64_t value, int bytes) { return number(value, bytes, true); }

/// Puts a marker segment behind the first two bytes of a JPEG.
std::string withSegment(const std::string& jpeg, unsigned char marker, const std::string& content) {
  return jpeg.substr(0, 2) + "\xff" + static_cast<char>(marker) + big(content.size() + 2, 2) + content + jpeg.substr(2);
}

/// A field of a TIFF directory with one value (TIFF 6.0, section 2).
std::string field(int tag, int type, std::uint64_t value) {
  return little(static_cast<std::uint64_t>(tag), 2) + little(static_cast<std::uint64_t>(type), 2) + little(1, 4) +
         little(value, 4);
}

std::string exifWith(const std::string& thumbnail) {
  constexpr int kShort = 3, kLong = 4, kOrientation = 0x0112, kCompression = 0x0103, kOffset = 0x0201, kLength = 0x0202;
  constexpr std::size_t kHeader = 8, kFrame = 6, kField = 12;  // a directory is its frame and its fields
  const std::size_t second = kHeader + kFrame + kField, data = second + kFrame + 3 * kField;
  std::string exif("Exif\0\0II*\0", 10);
  exif += little(kHeader, 4);
  exif += little(1, 2) + field(kOrientation, kShort, 1) + little(second, 4);
  exif += little(3, 2) + field(kCompression, kShort, 6) + field(kOffset, kLong, data) +
          field(kLength, kLong, thumbnail.size()) + little(0, 4);
  return exif + thumbnail;
}

struct HeifFree {
  void operator()(heif_context* context) const { heif_context_free(context); }
  void operator()(heif_encoder* encoder) const { heif_encoder_release(encoder); }
  void operator()(heif_image* image) const { heif_image_release(image); }
  void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
};
template <typename Thing>
using Heif = std::unique_ptr<Thing, HeifFree>;

bool isGood(const heif_error& error) { return error.code == heif_error_Ok; }

Heif<heif_image> heifImage() {
  heif_image* image = nullptr;
  if (!isGood(heif_image_create(kWidth, kHeight, heif_colorspace_RGB, heif_chroma_interleaved_RGB, &image))) return {};
  Heif<heif_image> owner(image);
  constexpr int kBits = 8;
  if (!isGood(heif_image_add_plane(image, heif_channel_interleaved, kWidth, kHeight, kBits))) return {};
  int stride = 0;
  std::uint8_t* plane = heif_image_get_plane(image, heif_channel_interleaved, &stride);
  const std::vector<std::uint8_t> bytes = pixels(kWidth, kHeight);
  constexpr std::size_t kRowBytes = std::size_t{kWidth} * kChannels;
  for (std::size_t y = 0; y < kHeight; ++y) {
    std::copy_n(bytes.data() + y * kRowBytes, kRowBytes, plane + y * static_cast<std::size_t>(stride));
  }
  return owner;
}

heif_error append(heif_context*, const void* bytes, std::size_t size, void* text) {
  static_cast<std::string*>(text)->append(static_cast<const char*>(bytes), size);
  return {heif_error_Ok, heif_suberror_Unspecified, ""};
}

}  // namespace

std::string jpegPhotograph() { return jpegOf(kWidth, kHeight); }

std::string jpegPhotographWithThumbnail() {
  constexpr int kSmallWidth = 160, kSmallHeight = 120;
  constexpr unsigned char kApp1 = 0xE1;
  return withSegment(jpegPhotograph(), kApp1, exifWith(jpegOf(kSmallWidth, kSmallHeight)));
}

std::optional<std::string> heicPhotographWithThumbnail() {
  const Heif<heif_context> context(heif_context_alloc());
  heif_encoder* found = nullptr;
  if (!isGood(heif_context_get_encoder_for_format(context.get(), heif_compression_HEVC, &found))) return std::nullopt;
  const Heif<heif_encoder> encoder(found);
  (void)heif_encoder_set_parameter_string(found, "preset", "ultrafast");  // x265 knows it; another encoder need not
  const Heif<heif_image> image = heifImage();
  if (!image) return std::nullopt;
  heif_image_handle *whole = nullptr, *small = nullptr;
  if (!isGood(heif_context_encode_image(context.get(), image.get(), found, nullptr, &whole))) return std::nullopt;
  const Heif<heif_image_handle> wholeOwner(whole);
  constexpr int kSmallSide = 320;
  if (!isGood(heif_context_encode_thumbnail(context.get(), image.get(), whole, found, nullptr, kSmallSide, &small))) {
    return std::nullopt;
  }
  const Heif<heif_image_handle> smallOwner(small);
  std::string file;
  heif_writer writer{1, &append};
  if (!isGood(heif_context_write(context.get(), &writer, &file))) return std::nullopt;
  return file;
}

std::string numberedJpeg(const std::string& jpeg, int number) {
  constexpr unsigned char kComment = 0xFE;
  return withSegment(jpeg, kComment, std::to_string(number));
}

std::string numberedHeic(const std::string& heic, int number) {
  const std::string content = std::to_string(number);
  return heic + big(content.size() + 8, 4) + "free" + content;  // a box that readers pass over
}

}  // namespace chatsum::bench
