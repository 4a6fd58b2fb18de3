#include "platform/system/pdf/FontProgram.h"

#include <hb-ot.h>

#include <cmath>
#include <span>
#include <utility>
#include <vector>

#include "platform/system/pdf/Deflate.h"
#include "platform/system/pdf/FontSubset.h"
#include "platform/system/pdf/PdfSyntax.h"
#include "platform/system/pdf/Sha256.h"

namespace chatsum::platform::system {
namespace {

std::optional<CffCharset> charsetOf(const FontFace& face) {
  if (face.hasTrueTypeOutlines()) return std::nullopt;
  hb_blob_t* table = hb_face_reference_table(face.face(), HB_TAG('C', 'F', 'F', ' '));
  unsigned length = 0;
  const char* data = hb_blob_get_data(table, &length);
  auto charset =
      CffCharset::read({reinterpret_cast<const std::uint8_t*>(data), length}, hb_face_get_glyph_count(face.face()));
  hb_blob_destroy(table);
  return charset;
}

/// Font units as thousandths of the font size.
std::string thousandths(const FontFace& face, int units) {
  return std::to_string(std::lround(units * 1000.0 / face.unitsPerEm()));
}

/// The box around all glyphs, out of the font's head table.
std::string boundingBox(const FontFace& face) {
  constexpr unsigned kPlaceOfBox = 36;
  hb_blob_t* table = hb_face_reference_table(face.face(), HB_TAG('h', 'e', 'a', 'd'));
  unsigned length = 0;
  const char* bytes = hb_blob_get_data(table, &length);
  std::string box;
  for (unsigned i = 0; i < 4; ++i) {
    const unsigned at = kPlaceOfBox + 2 * i;
    int units = 0;
    if (at + 2 <= length) {
      units = static_cast<std::int16_t>(static_cast<unsigned char>(bytes[at]) << 8 |
                                        static_cast<unsigned char>(bytes[at + 1]));
    }
    box += i == 0 ? '[' : ' ';
    box += thousandths(face, units);
  }
  hb_blob_destroy(table);
  return box + "]";
}

/// All but the font file (ISO 32000-1, 9.8).
std::string descriptor(const FontFace& face, const std::string& name) {
  constexpr int kFixedPitch = 1, kNonsymbolic = 32, kItalic = 64;
  const double angle = hb_style_get_value(face.font(), HB_STYLE_TAG_SLANT_ANGLE);
  const double weight = hb_style_get_value(face.font(), HB_STYLE_TAG_WEIGHT);
  int flags = kNonsymbolic;
  if (face.advanceOf(face.asciiGlyph('i')) == face.advanceOf(face.asciiGlyph('M'))) flags |= kFixedPitch;
  if (angle != 0) flags |= kItalic;
  hb_position_t capHeight = 0;
  if (!hb_ot_metrics_get_position(face.font(), HB_OT_METRICS_TAG_CAP_HEIGHT, &capHeight)) capHeight = face.ascent();
  return "/Type/FontDescriptor/FontName/" + name + "/Flags " + std::to_string(flags) + "/FontBBox" + boundingBox(face) +
         "/ItalicAngle " + std::to_string(std::lround(angle)) + "/Ascent " + thousandths(face, face.ascent()) +
         "/Descent " + thousandths(face, -face.descent()) + "/CapHeight " + thousandths(face, capHeight) +
         // No font tells the thickness of its stems; it is wanted only to find another font in place of this one.
         "/StemV " + std::to_string(std::lround(weight / 5));
}

}  // namespace

FontProgram::FontProgram(const FontFace& face) : face_(face), charset_(charsetOf(face)) {}

void FontProgram::useAscii(char character) {
  ascii_.set(static_cast<unsigned char>(character) & 0x7F);
  use(face_.asciiGlyph(character));
}

std::uint16_t FontProgram::codeOf(std::uint32_t glyph) const {
  return charset_ ? charset_->characterOf(glyph) : static_cast<std::uint16_t>(glyph);
}

int FontProgram::widthOf(std::uint32_t glyph) const {
  return static_cast<int>(std::lround(face_.advanceOf(glyph) * 100000.0 / face_.unitsPerEm()));
}

std::string FontProgram::name() const {
  Sha256 hash;
  for (const std::uint32_t glyph : glyphs_) hash.add(glyph);
  const Sha256::Digest digest = hash.finish();
  std::string tag;
  for (std::size_t i = 0; i < 6; ++i) tag += static_cast<char>('A' + digest[i] % 26);
  return tag + "+" + face_.postScriptName();
}

int FontProgram::write(PdfFile& file, StreamQueue& queue) const {
  FontUsage usage{{glyphs_.begin(), glyphs_.end()}, {}};
  for (std::size_t c = 0; c < ascii_.size(); ++c) {
    if (ascii_[c]) usage.ascii += static_cast<char>(c);
  }
  const int program = file.newObject(), described = file.newObject();
  const std::string key = face_.hasTrueTypeOutlines() ? "/FontFile2 " : "/FontFile3 ";
  file.writeObject(described, "<<" + descriptor(face_, name()) + key + pdf::reference(program) + ">>");
  constexpr std::size_t kAboutAFont = 1 << 20;
  queue.add(kAboutAFont, [program, usage = std::move(usage), &face = face_, isCidKeyed = charset_.has_value()] {
    const bool isTrueType = face.hasTrueTypeOutlines();
    const std::string bytes = isTrueType ? trueTypeSubset(face, usage) : cffSubset(face, usage, isCidKeyed);
    const std::string kind = isTrueType ? "/Length1 " + std::to_string(bytes.size()) : "/Subtype/CIDFontType0C";
    std::vector<PdfStream> made;
    made.push_back({program, kind + "/Filter/FlateDecode", deflated(bytes)});
    return made;
  });
  return described;
}

}  // namespace chatsum::platform::system
