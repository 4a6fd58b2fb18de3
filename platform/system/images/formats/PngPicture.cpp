#include <png.h>

#include <csetjmp>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/system/images/PictureLimits.h"
#include "platform/system/images/formats/Exif.h"
#include "platform/system/images/formats/PictureCodec.h"

namespace chatsum::platform::system {
namespace {

constexpr std::string_view kSignature("\x89PNG\r\n\x1A\n", 8);
constexpr std::size_t kMostExifBytes = std::size_t{64} << 10;
constexpr png_alloc_size_t kMostChunkBytes = 8U << 20;

bool recognizes(std::string_view first) { return first.starts_with(kSignature); }

unsigned big32(std::string_view bytes, std::size_t place) {
  unsigned value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[place + i]);
  return value;
}

std::optional<PictureHeader> readHeader(PictureBytes& bytes) {
  PictureHeader header;
  PictureStream stream(bytes);
  stream.skip(kSignature.size());
  for (int parts = 0; parts < limits::kParts; ++parts) {
    std::string chunk(8, '\0');
    if (stream.read(chunk.data(), chunk.size()) != chunk.size()) return std::nullopt;
    const std::size_t length = big32(chunk, 0);
    const std::string type = chunk.substr(4);
    if ((parts == 0) != (type == "IHDR") || length > PNG_UINT_31_MAX) return std::nullopt;
    if (type == "IDAT") return header;
    std::size_t taken = 0;
    if (type == "IHDR" || (type == "eXIf" && length <= kMostExifBytes)) {
      std::string content(length < kMostExifBytes ? length : kMostExifBytes, '\0');
      taken = stream.read(content.data(), content.size());
      if (taken != length) return std::nullopt;
      if (type == "eXIf") {
        header.orientation = orientationIn(content);
      } else {
        if (length < 8) return std::nullopt;
        header.size = {static_cast<int>(big32(content, 0)), static_cast<int>(big32(content, 4))};
      }
    }
    stream.skip(length - taken + 4);  // and the checksum
  }
  return std::nullopt;
}

/// libpng's state. Errors jump back to its own buffer; nothing with a destructor may be made in between.
struct Decoder {
  explicit Decoder(PictureStream& bytes) : stream(bytes) {
    png = png_create_read_struct(
        PNG_LIBPNG_VER_STRING, this, [](png_structp failed, png_const_charp) { png_longjmp(failed, 1); },
        [](png_structp, png_const_charp) {});
    if (png) info = png_create_info_struct(png);
  }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  ~Decoder() { png_destroy_read_struct(&png, &info, nullptr); }

  static void read(png_structp png, png_bytep out, std::size_t count) {
    auto& decoder = *static_cast<Decoder*>(png_get_io_ptr(png));
    if (decoder.stream.read(out, count) != count) png_error(png, "the file ends early");
  }

  /// Makes every kind of pixels red, green, blue and alpha of a byte each.
  bool start() {
    if (!png || !info || setjmp(png_jmpbuf(png)) != 0) return false;
    png_set_read_fn(png, this, read);
    png_set_user_limits(png, limits::kPictureSide, limits::kPictureSide);
    png_set_chunk_malloc_max(png, kMostChunkBytes);
    // Texts and profiles are left packed.
    static const png_byte kIgnored[] = "iCCP\0iTXt\0tEXt\0zTXt\0sPLT\0eXIf\0hIST";
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, kIgnored, sizeof kIgnored / 5);
    png_read_info(png, info);
    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
    return true;
  }

  bool readRow(png_bytep row) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    png_read_row(png, row, nullptr);
    return true;
  }

  PictureStream& stream;
  png_structp png = nullptr;
  png_infop info = nullptr;
  int passes = 1;
};

bool decode(PictureBytes& bytes, const PictureHeader& header, PictureReducer& reducer) {
  PictureStream stream(bytes);
  Decoder decoder(stream);
  if (!decoder.start()) return false;
  const auto rowBytes = static_cast<std::size_t>(header.size.width) * 4;
  if (png_get_rowbytes(decoder.png, decoder.info) != rowBytes ||
      png_get_image_height(decoder.png, decoder.info) != static_cast<png_uint_32>(header.size.height)) {
    return false;
  }
  const bool isInterlaced = decoder.passes > 1;
  if (isInterlaced && header.size.pixels() > limits::kWholePixels) return false;

  reducer.begin(header.size);
  const auto rows = static_cast<std::size_t>(header.size.height);
  std::vector<std::uint8_t> pixels(rowBytes * (isInterlaced ? rows : 1));
  for (int pass = 0; pass < decoder.passes; ++pass) {
    for (std::size_t row = 0; row < rows; ++row) {
      std::uint8_t* place = pixels.data() + (isInterlaced ? row * rowBytes : 0);
      if (!decoder.readRow(place)) return false;
      if (pass + 1 == decoder.passes) reducer.addRow(place);
    }
  }
  return true;
}

}  // namespace

const PictureCodec kPngCodec = {recognizes, readHeader, decode};

}  // namespace chatsum::platform::system
