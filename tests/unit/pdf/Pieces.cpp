#include "tests/unit/pdf/Pieces.h"

#include <hb.h>

#include <stdexcept>
#include <utility>

namespace chatsum::platform::system {
namespace {

constexpr float kUsualHeight = 17, kUsualBaseline = 13;

bool isAsciiAlone(const FontFace& face, const std::string& text, const std::vector<Glyph>& glyphs) {
  if (text.size() != glyphs.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] < 0x20 || text[i] > 0x7E || glyphs[i].id == 0 || glyphs[i].id != face.asciiGlyph(text[i])) return false;
    if (glyphs[i].xOffset != 0 || glyphs[i].yOffset != 0) return false;
  }
  return true;
}

float widthOf(const PlacedPiece& placed, double fontSize) {
  const FontFace& face = *placed.piece->face;
  const int space = face.advanceOf(face.asciiGlyph(' ')) * static_cast<int>(placed.spaces);
  return placed.gap + static_cast<float>((placed.piece->width + space) * fontSize / face.unitsPerEm());
}

}  // namespace

std::unique_ptr<const FontFace> openFace(const std::string& path, unsigned number) {
  auto face = FontFace::open(path, number);
  if (!face) throw std::runtime_error("no font: " + path);
  return face;
}

const Piece& Pieces::shape(const FontFace& face, const std::string& text, Direction direction) {
  Kept& kept = pieces_.emplace_back();
  kept.text = text;
  hb_buffer_t* buffer = hb_buffer_create();
  hb_buffer_add_utf8(buffer, text.data(), static_cast<int>(text.size()), 0, -1);
  hb_buffer_set_flags(buffer, HB_BUFFER_FLAG_REMOVE_DEFAULT_IGNORABLES);
  hb_buffer_guess_segment_properties(buffer);
  const bool isRightToLeft = direction == Direction::kRightToLeft;
  hb_buffer_set_direction(buffer, isRightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
  hb_shape(face.font(), buffer, nullptr, 0);
  unsigned count = 0;
  const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
  const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
  std::int32_t width = 0;
  for (unsigned i = 0; i < count; ++i) {
    kept.glyphs.push_back(
        {infos[i].codepoint, infos[i].cluster, positions[i].x_advance, positions[i].x_offset, positions[i].y_offset});
    width += positions[i].x_advance;
  }
  hb_buffer_destroy(buffer);
  kept.piece = {&face, next_++, isRightToLeft, isAsciiAlone(face, text, kept.glyphs),
                false, width,   kept.text,     kept.glyphs};
  return kept.piece;
}

TextLayout Pieces::line(std::initializer_list<const Piece*> pieces, double fontSize, std::uint32_t spaces) {
  KeptLayout made;
  float width = 0;
  for (const Piece* piece : pieces) {
    made.pieces.push_back({piece, spaces, 0});
    width += widthOf(made.pieces.back(), fontSize);
  }
  made.pieces.back().spaces = 0;
  made.lines.push_back({0, static_cast<std::uint32_t>(made.pieces.size()), width, kUsualHeight, kUsualBaseline});
  return layout(std::move(made), fontSize);
}

TextLayout Pieces::lines(std::initializer_list<const Piece*> pieces, double fontSize, float lineHeight) {
  KeptLayout made;
  for (const Piece* piece : pieces) {
    const auto at = static_cast<std::uint32_t>(made.pieces.size());
    made.pieces.push_back({piece, 0, 0});
    made.lines.push_back({at, at + 1, widthOf(made.pieces.back(), fontSize), lineHeight, kUsualBaseline});
  }
  return layout(std::move(made), fontSize);
}

TextLayout Pieces::words(const FontFace& face, const std::string& text, double fontSize) {
  KeptLayout made;
  float width = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    const std::size_t next = std::min(text.find_first_not_of(' ', end), text.size());
    made.pieces.push_back({&shape(face, text.substr(at, end - at)), static_cast<std::uint32_t>(next - end), 0});
    width += widthOf(made.pieces.back(), fontSize);
    at = next;
  }
  made.lines.push_back({0, static_cast<std::uint32_t>(made.pieces.size()), width, kUsualHeight, kUsualBaseline});
  return layout(std::move(made), fontSize);
}

TextLayout Pieces::layout(KeptLayout made, double fontSize) {
  KeptLayout& kept = layouts_.emplace_back(std::move(made));
  Size size;
  for (const TextLine& line : kept.lines) {
    size.width = std::max(size.width, static_cast<double>(line.width));
    size.height += static_cast<double>(line.height);
  }
  return {size, fontSize, kept.lines, kept.pieces};
}

}  // namespace chatsum::platform::system
