#include "platform/system/pdf/JpegEncoder.h"

#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace chatsum::platform::system {
namespace {

constexpr int kQuality = 90;

/// The library's way out of an error must not return to it.
struct ErrorExit {
  jpeg_error_mgr manager;
  std::jmp_buf place;
};

void leave(j_common_ptr encoder) { std::longjmp(reinterpret_cast<ErrorExit*>(encoder->err)->place, 1); }

/// No object with a destructor stands here, because longjmp would pass over it. Answers malloc'ed bytes or nullptr.
unsigned char* encode(const unsigned char* rgb, int width, int height, unsigned long* size) {
  jpeg_compress_struct encoder;
  ErrorExit error;
  unsigned char* bytes = nullptr;
  encoder.err = jpeg_std_error(&error.manager);
  error.manager.error_exit = leave;
  error.manager.output_message = [](j_common_ptr) {};
  // `bytes` is not read after a longjmp: its value would not be certain. An error loses the library's buffer at worst.
  if (setjmp(error.place) != 0) {
    jpeg_destroy_compress(&encoder);
    return nullptr;
  }
  jpeg_create_compress(&encoder);
  jpeg_mem_dest(&encoder, &bytes, size);
  encoder.image_width = static_cast<JDIMENSION>(width);
  encoder.image_height = static_cast<JDIMENSION>(height);
  encoder.input_components = 3;
  encoder.in_color_space = JCS_RGB;
  jpeg_set_defaults(&encoder);
  jpeg_set_quality(&encoder, kQuality, TRUE);
  encoder.optimize_coding = TRUE;
  for (int i = 0; i < encoder.num_components; ++i) {
    encoder.comp_info[i].h_samp_factor = 1;
    encoder.comp_info[i].v_samp_factor = 1;
  }
  jpeg_start_compress(&encoder, TRUE);
  while (encoder.next_scanline < encoder.image_height) {
    // The library does not write to the rows it is given.
    auto* row =
        const_cast<unsigned char*>(rgb + static_cast<std::size_t>(encoder.next_scanline) * encoder.image_width * 3);
    jpeg_write_scanlines(&encoder, &row, 1);
  }
  jpeg_finish_compress(&encoder);
  jpeg_destroy_compress(&encoder);
  return bytes;
}

}  // namespace

std::string encodeJpeg(std::string_view rgb, int width, int height) {
  constexpr int kMostSide = 65500;
  if (width <= 0 || height <= 0 || width > kMostSide || height > kMostSide) return {};
  unsigned long size = 0;
  unsigned char* bytes = encode(reinterpret_cast<const unsigned char*>(rgb.data()), width, height, &size);
  if (!bytes) return {};
  std::string made(reinterpret_cast<const char*>(bytes), size);
  std::free(bytes);
  return made;
}

}  // namespace chatsum::platform::system
