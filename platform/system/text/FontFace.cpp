#include "platform/system/text/FontFace.h"

#include <hb-ot.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>

namespace chatsum::platform::system {
namespace {

using BlobRef = std::unique_ptr<hb_blob_t, void (*)(hb_blob_t*)>;

bool hasTable(hb_face_t* face, hb_tag_t tag) {
  hb_blob_t* table = hb_face_reference_table(face, tag);
  const bool has = hb_blob_get_length(table) > 0;
  hb_blob_destroy(table);
  return has;
}

/// The OS/2 table's first bit of licence: "restricted" fonts must not stand in documents.
bool mayBeEmbedded(hb_face_t* face) {
  constexpr unsigned kPlaceOfLicence = 8, kRestricted = 0x0002;
  hb_blob_t* table = hb_face_reference_table(face, HB_TAG('O', 'S', '/', '2'));
  unsigned length = 0;
  const char* bytes = hb_blob_get_data(table, &length);
  bool may = true;
  if (length >= kPlaceOfLicence + 2) {
    const auto low = static_cast<unsigned char>(bytes[kPlaceOfLicence + 1]);
    may = (low & 0x0F) != kRestricted;
  }
  hb_blob_destroy(table);
  return may;
}

std::string postScriptNameOf(hb_face_t* face) {
  char name[128];
  unsigned size = sizeof name;
  hb_ot_name_get_utf8(face, HB_OT_NAME_ID_POSTSCRIPT_NAME, HB_LANGUAGE_INVALID, &size, name);
  std::string clean;
  for (const char c : std::string(name, size)) {
    // What a PDF name takes as it is.
    if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-') clean += c;
  }
  return clean.empty() ? "Font" : clean;
}

}  // namespace

std::unique_ptr<const FontFace> FontFace::open(const std::string& path, unsigned number) {
  errno = 0;
  const BlobRef blob(hb_blob_create_from_file_or_fail(path.c_str()), hb_blob_destroy);
  // Without memory another font must not come in the place of this one.
  if (!blob && errno == ENOMEM) throw std::bad_alloc();
  if (!blob) return nullptr;
  std::unique_ptr<FontFace> made(new FontFace);
  made->face_ = hb_face_create(blob.get(), number);
  if (made->face_ == hb_face_get_empty()) throw std::bad_alloc();
  hb_face_t* face = made->face_;
  if (hb_face_get_glyph_count(face) == 0 || !mayBeEmbedded(face)) return nullptr;
  // A document would show a variable font's default where another instance was measured.
  if (hb_ot_var_has_data(face)) return nullptr;

  made->path_ = path;
  made->postScriptName_ = postScriptNameOf(face);
  made->unitsPerEm_ = static_cast<int>(hb_face_get_upem(face));
  made->hasTrueTypeOutlines_ = hasTable(face, HB_TAG('g', 'l', 'y', 'f'));
  made->hasColorPictures_ = hb_ot_color_has_png(face) != 0;
  const bool hasOutlines = made->hasTrueTypeOutlines_ || hasTable(face, HB_TAG('C', 'F', 'F', ' '));
  if (!hasOutlines && !made->hasColorPictures_) return nullptr;

  made->font_ = hb_font_create(face);
  if (made->font_ == hb_font_get_empty()) throw std::bad_alloc();
  hb_font_extents_t extents{};
  hb_font_get_h_extents(made->font_, &extents);
  made->ascent_ = std::max(extents.ascender, 0);
  made->descent_ = std::max(-extents.descender, 0);
  made->lineGap_ = std::max(extents.line_gap, 0);
  hb_face_make_immutable(face);
  hb_font_make_immutable(made->font_);
  for (char32_t c = 0x20; c < 0x7F; ++c) made->asciiGlyphs_[c] = made->glyphFor(c);
  return made;
}

FontFace::~FontFace() {
  hb_font_destroy(font_);
  hb_face_destroy(face_);
}

std::uint32_t FontFace::glyphFor(char32_t codePoint) const {
  hb_codepoint_t glyph = 0;
  return hb_font_get_nominal_glyph(font_, codePoint, &glyph) ? glyph : 0;
}

int FontFace::advanceOf(std::uint32_t glyph) const { return hb_font_get_glyph_h_advance(font_, glyph); }

}  // namespace chatsum::platform::system
