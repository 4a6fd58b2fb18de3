#include "platform/system/pdf/PictureGlyph.h"

#include <hb-ot.h>
#include <png.h>

#include <memory>

namespace chatsum::platform::system {
namespace {

struct FreeBlob {
  void operator()(hb_blob_t* blob) const { hb_blob_destroy(blob); }
};
using BlobRef = std::unique_ptr<hb_blob_t, FreeBlob>;

BlobRef fileOf(const FontFace& face, std::uint32_t glyph) {
  return BlobRef(hb_ot_color_glyph_reference_png(face.font(), glyph));
}

/// libpng's own clean-up, on every way out.
struct PngImage : png_image {
  PngImage() : png_image{} { version = PNG_IMAGE_VERSION; }
  ~PngImage() { png_image_free(this); }
  PngImage(const PngImage&) = delete;
  PngImage& operator=(const PngImage&) = delete;
};

}  // namespace

bool hasPicture(const FontFace& face, std::uint32_t glyph) { return hb_blob_get_length(fileOf(face, glyph).get()) > 0; }

Bitmap pictureOf(const FontFace& face, std::uint32_t glyph) {
  constexpr std::uint32_t kMostSide = 1024;
  const BlobRef file = fileOf(face, glyph);
  unsigned length = 0;
  const char* bytes = hb_blob_get_data(file.get(), &length);
  PngImage png;
  if (length == 0 || !png_image_begin_read_from_memory(&png, bytes, length)) return {};
  if (png.width == 0 || png.height == 0 || png.width > kMostSide || png.height > kMostSide) return {};
  png.format = PNG_FORMAT_RGBA;
  Bitmap bitmap{static_cast<int>(png.width), static_cast<int>(png.height), {}};
  bitmap.rgba.resize(PNG_IMAGE_SIZE(png));
  if (!png_image_finish_read(&png, nullptr, bitmap.rgba.data(), 0, nullptr)) return {};
  return bitmap;
}

}  // namespace chatsum::platform::system
