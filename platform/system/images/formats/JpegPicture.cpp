#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

// Wants <cstdio> before it.
#include <jerror.h>
#include <jpeglib.h>

#include "platform/system/images/PictureLimits.h"
#include "platform/system/images/formats/Exif.h"
#include "platform/system/images/formats/PictureCodec.h"

namespace chatsum::platform::system {
namespace {

constexpr unsigned kStartOfImage = 0xD8, kEndOfImage = 0xD9, kStartOfScan = 0xDA, kApp1 = 0xE1;
constexpr std::string_view kExifPrefix("Exif\0\0", 6), kEnd("\xFF\xD9", 2);

bool isFrameHeader(unsigned marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

/// The next marker's second byte; 0 at the end.
unsigned nextMarker(PictureStream& stream) {
  std::uint8_t byte = 0;
  while (stream.readByte(byte)) {
    if (byte != 0xFF) continue;
    while (stream.readByte(byte) && byte == 0xFF) {
    }
    if (byte != 0 && byte != 0xFF) return byte;
  }
  return 0;
}

bool recognizes(std::string_view first) { return first.starts_with("\xFF\xD8\xFF"); }

std::optional<PictureHeader> readHeader(PictureBytes& bytes) {
  PictureHeader header;
  PictureStream stream(bytes);
  bool hasExif = false;
  for (int parts = 0; parts < limits::kParts; ++parts) {
    const unsigned marker = nextMarker(stream);
    if (marker == 0 || marker == kEndOfImage || marker == kStartOfScan) return std::nullopt;
    if (marker == kStartOfImage || marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) continue;
    unsigned length = 0;
    if (!stream.readBig16(length) || length < 2) return std::nullopt;
    length -= 2;
    if (isFrameHeader(marker)) {
      std::uint8_t precision = 0;
      unsigned height = 0, width = 0;
      if (!stream.readByte(precision) || !stream.readBig16(height) || !stream.readBig16(width)) return std::nullopt;
      header.size = {static_cast<int>(width), static_cast<int>(height)};
      return header;
    }
    if (marker == kApp1 && !hasExif) {
      std::string segment(length, '\0');
      segment.resize(stream.read(segment.data(), segment.size()));
      if (!segment.starts_with(kExifPrefix)) continue;
      hasExif = true;
      header.orientation = orientationIn(std::string_view(segment).substr(kExifPrefix.size()));
      continue;
    }
    stream.skip(length);
  }
  return std::nullopt;
}

/// libjpeg's state with its callbacks. Errors jump back to `failed`; nothing with a destructor may be made in between.
struct Decoder {
  explicit Decoder(PictureStream& bytes) : stream(bytes) {
    info.err = jpeg_std_error(&errors);
    info.client_data = this;
    errors.error_exit = [](j_common_ptr common) { std::longjmp(of(common).failed, 1); };
    errors.emit_message = onMessage;
    errors.output_message = [](j_common_ptr) {};
    source.init_source = [](j_decompress_ptr) {};
    source.term_source = [](j_decompress_ptr) {};
    source.resync_to_restart = jpeg_resync_to_restart;
    source.fill_input_buffer = fill;
    source.skip_input_data = skip;
    progress.progress_monitor = [](j_common_ptr common) {
      if (of(common).info.input_scan_number > limits::kJpegScans) std::longjmp(of(common).failed, 1);
    };
  }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  ~Decoder() { jpeg_destroy_decompress(&info); }

  static Decoder& of(j_common_ptr common) { return *static_cast<Decoder*>(common->client_data); }

  /// A picture ends where it is damaged; what does not harm it may be odd.
  static void onMessage(j_common_ptr common, int level) {
    if (level >= 0) return;
    // All of the picture comes with the first scan, the next ones make it finer. (A file that ends in the few bytes of
    // tables between two scans is an error all the same.)
    if (of(common).hasEnded && of(common).info.input_scan_number > 1) return;
    switch (common->err->msg_code) {
      case JWRN_ADOBE_XFORM:
      case JWRN_BOGUS_ICC:
      case JWRN_EXTRANEOUS_DATA:
      case JWRN_JFIF_MAJOR:
      case JWRN_TOO_MUCH_DATA:
        return;
      default:
        std::longjmp(of(common).failed, 1);
    }
  }

  static boolean fill(j_decompress_ptr info) {
    Decoder& decoder = of(reinterpret_cast<j_common_ptr>(info));
    std::string_view bytes = decoder.stream.next();
    if (bytes.empty()) {
      decoder.hasEnded = true;
      bytes = kEnd;
    }
    decoder.source.next_input_byte = reinterpret_cast<const JOCTET*>(bytes.data());
    decoder.source.bytes_in_buffer = bytes.size();
    return TRUE;
  }

  static void skip(j_decompress_ptr info, long count) {
    Decoder& decoder = of(reinterpret_cast<j_common_ptr>(info));
    if (count <= 0) return;
    const auto bytes = static_cast<std::size_t>(count);
    if (bytes <= decoder.source.bytes_in_buffer) {
      decoder.source.next_input_byte += bytes;
      decoder.source.bytes_in_buffer -= bytes;
      return;
    }
    decoder.stream.skip(bytes - decoder.source.bytes_in_buffer);
    decoder.source.bytes_in_buffer = 0;
  }

  /// Reads up to the first scan; false when that fails.
  bool readHeader() {
    if (setjmp(failed) != 0) return false;
    jpeg_create_decompress(&info);
    info.mem->max_memory_to_use = limits::kDecoderBytes;
    info.src = &source;
    info.progress = &progress;
    return jpeg_read_header(&info, TRUE) == JPEG_HEADER_OK;
  }

  bool start() {
    if (setjmp(failed) != 0) return false;
    return jpeg_start_decompress(&info) == TRUE;
  }

  bool readRow(JSAMPROW row) {
    if (setjmp(failed) != 0) return false;
    return jpeg_read_scanlines(&info, &row, 1) == 1;
  }

  /// Whether what follows the last row is the end of the picture.
  bool finish() {
    if (setjmp(failed) != 0) return false;
    return jpeg_finish_decompress(&info) == TRUE;
  }

  PictureStream& stream;
  jpeg_decompress_struct info{};
  jpeg_error_mgr errors{};
  jpeg_source_mgr source{};
  jpeg_progress_mgr progress{};
  std::jmp_buf failed{};
  bool hasEnded = false;  // the file, before the picture did
};

/// Cyan, magenta, yellow and black to what a screen shows, in place. Files that Adobe's marker stands in count them
/// from the other end.
void screenColors(std::vector<std::uint8_t>& row, bool isInverted) {
  for (std::size_t i = 0; i + 3 < row.size(); i += 4) {
    const unsigned flip = isInverted ? 0 : 255;
    const unsigned light = row[i + 3] ^ flip;
    for (std::size_t channel = 0; channel < 3; ++channel) {
      row[i + channel] = static_cast<std::uint8_t>((row[i + channel] ^ flip) * light / 255);
    }
    row[i + 3] = 255;
  }
}

/// At an eighth, a quarter, half or full size: the smallest that is enough.
bool decode(PictureBytes& bytes, const PictureHeader&, PictureReducer& reducer) {
  PictureStream stream(bytes);
  Decoder decoder(stream);
  if (!decoder.readHeader()) return false;
  jpeg_decompress_struct& info = decoder.info;
  const PixelSize full{static_cast<int>(info.image_width), static_cast<int>(info.image_height)};
  if (!full.isAllowed()) return false;
  const bool hasScans = jpeg_has_multiple_scans(&info) == TRUE;

  const auto scaled = [](int side, int eighths) { return (side * eighths + 7) / 8; };
  int eighths = 1;
  while (eighths < 8 && !reducer.isEnough({scaled(full.width, eighths), scaled(full.height, eighths)})) eighths *= 2;
  info.scale_num = static_cast<unsigned>(eighths);
  info.scale_denom = 8;
  const bool isCmyk = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
  info.out_color_space = isCmyk ? JCS_CMYK : JCS_EXT_RGBA;
  if (eighths < 8) {
    info.dct_method = JDCT_IFAST;
    info.do_fancy_upsampling = FALSE;
  }
  if (!decoder.start()) return false;
  const PixelSize decoded{static_cast<int>(info.output_width), static_cast<int>(info.output_height)};
  if (info.output_components != 4 || decoded.isEmpty()) return false;

  reducer.begin(decoded);
  std::vector<std::uint8_t> row(static_cast<std::size_t>(decoded.width) * 4);
  bool isSound = true;
  for (int y = 0; y < decoded.height; ++y) {
    isSound = decoder.readRow(row.data());
    if (!isSound) break;
    if (isCmyk) screenColors(row, info.saw_Adobe_marker == TRUE);
    reducer.addRow(row.data());
  }
  // Of a picture of one scan with all its rows nothing but the end mark is missing when the file ended.
  if (!isSound || !decoder.finish() || (decoder.hasEnded && hasScans)) reducer.endEarly();
  return true;
}

}  // namespace

const PictureCodec kJpegCodec = {recognizes, readHeader, decode};

}  // namespace chatsum::platform::system
