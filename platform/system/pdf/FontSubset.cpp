#include "platform/system/pdf/FontSubset.h"

#include <hb-ot.h>
#include <hb-subset.h>

#include <memory>

namespace chatsum::platform::system {
namespace {

struct FreeFace {
  void operator()(hb_face_t* face) const { hb_face_destroy(face); }
};
using FaceRef = std::unique_ptr<hb_face_t, FreeFace>;

struct FreeInput {
  void operator()(hb_subset_input_t* input) const { hb_subset_input_destroy(input); }
};

std::string bytesOf(hb_blob_t* blob) {
  unsigned length = 0;
  const char* data = hb_blob_get_data(blob, &length);
  std::string bytes(data ? data : "", data ? length : 0);
  hb_blob_destroy(blob);
  return bytes;
}

/// Falls back to the whole font when there is no subset of it.
FaceRef subset(const FontFace& face, const FontUsage& usage, unsigned flags) {
  const std::unique_ptr<hb_subset_input_t, FreeInput> input(hb_subset_input_create_or_fail());
  if (input) {
    hb_set_t* glyphs = hb_subset_input_glyph_set(input.get());
    for (const std::uint32_t glyph : usage.glyphs) hb_set_add(glyphs, glyph);
    hb_set_t* dropped = hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG);
    // Text is shaped already. With the layout tables there, what they can turn glyphs into would be kept, too.
    for (const char* tag :
         {"GSUB", "GPOS", "GDEF", "morx", "mort", "kern", "kerx", "name", "OS/2", "post", "cmap", "gvar",
          "fvar", "avar", "HVAR", "MVAR", "STAT", "COLR", "CPAL", "SVG ", "CBDT", "CBLC", "sbix"}) {
      hb_set_add(dropped, hb_tag_from_string(tag, -1));
    }
    hb_subset_input_set_flags(input.get(), flags | HB_SUBSET_FLAGS_NO_HINTING | HB_SUBSET_FLAGS_NOTDEF_OUTLINE);
    if (hb_face_t* made = hb_subset_or_fail(face.face(), input.get())) return FaceRef(made);
  }
  return FaceRef(hb_face_reference(face.face()));
}

void appendNumber(std::string& to, std::uint32_t value) {
  to += static_cast<char>(value >> 8);
  to += static_cast<char>(value & 0xFF);
}

/// A character map of ASCII characters: one table for Windows' Unicode, in format 4, a segment for each character.
std::string characterMap(const FontFace& face, const std::string& characters) {
  const auto segments = static_cast<std::uint32_t>(characters.size()) + 1;  // a last one ends the table
  std::uint32_t power = 1, exponent = 0;
  for (; power * 2 <= segments; power *= 2) ++exponent;

  std::string map;
  for (const std::uint32_t header : {0, 1, /*platform*/ 3, /*encoding*/ 1, 0, /*offset*/ 12}) appendNumber(map, header);
  for (const std::uint32_t header :
       {4U, 16 + 8 * segments, 0U, 2 * segments, 2 * power, exponent, 2 * (segments - power)}) {
    appendNumber(map, header);
  }
  const std::string all = characters + '\xFF';
  const auto codeOf = [](char c) { return c == '\xFF' ? 0xFFFFU : static_cast<std::uint32_t>(c); };
  for (const char c : all) appendNumber(map, codeOf(c));  // ends of the segments
  appendNumber(map, 0);
  for (const char c : all) appendNumber(map, codeOf(c));  // their begins
  for (const char c : all) {
    // What makes a glyph of a character; what makes 0 of the last.
    appendNumber(map, ((c == '\xFF' ? 0U : face.asciiGlyph(c)) - codeOf(c)) & 0xFFFF);
  }
  for (std::uint32_t i = 0; i < segments; ++i) appendNumber(map, 0);
  return map;
}

}  // namespace

std::string trueTypeSubset(const FontFace& face, const FontUsage& usage) {
  const FaceRef small = subset(face, usage, HB_SUBSET_FLAGS_RETAIN_GIDS);
  const FaceRef file(hb_face_builder_create());
  for (const char* name : {"glyf", "head", "hhea", "hmtx", "loca", "maxp"}) {
    const hb_tag_t tag = hb_tag_from_string(name, -1);
    hb_blob_t* table = hb_face_reference_table(small.get(), tag);
    hb_face_builder_add_table(file.get(), tag, table);
    hb_blob_destroy(table);
  }
  const std::string map = characterMap(face, usage.ascii);
  hb_blob_t* table =
      hb_blob_create(map.data(), static_cast<unsigned>(map.size()), HB_MEMORY_MODE_DUPLICATE, nullptr, nullptr);
  hb_face_builder_add_table(file.get(), HB_TAG('c', 'm', 'a', 'p'), table);
  hb_blob_destroy(table);
  return bytesOf(hb_face_reference_blob(file.get()));
}

std::string cffSubset(const FontFace& face, const FontUsage& usage, bool isCidKeyed) {
  const FaceRef small = subset(face, usage, isCidKeyed ? HB_SUBSET_FLAGS_DEFAULT : HB_SUBSET_FLAGS_RETAIN_GIDS);
  return bytesOf(hb_face_reference_table(small.get(), HB_TAG('C', 'F', 'F', ' ')));
}

}  // namespace chatsum::platform::system
