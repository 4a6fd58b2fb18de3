#include "platform/system/text/Shaper.h"

#include <algorithm>
#include <limits>
#include <new>

namespace chatsum::platform::system {
namespace {

constexpr unsigned kEverywhere = std::numeric_limits<unsigned>::max();
constexpr hb_feature_t kNoLigatures[] = {{HB_TAG('l', 'i', 'g', 'a'), 0, 0, kEverywhere},
                                         {HB_TAG('c', 'l', 'i', 'g'), 0, 0, kEverywhere}};

bool isWesternScript(hb_script_t script) {
  return script == HB_SCRIPT_LATIN || script == HB_SCRIPT_GREEK || script == HB_SCRIPT_CYRILLIC;
}

}  // namespace

std::int64_t widthOf(std::span<const Glyph> glyphs) {
  std::int64_t width = 0;
  for (const Glyph& glyph : glyphs) width += glyph.advance;
  return std::max<std::int64_t>(width, 0);
}

Shaper::Shaper() : buffer_(hb_buffer_create()) {
  if (!hb_buffer_allocation_successful(buffer_.get())) throw std::bad_alloc();
}

std::span<const Glyph> Shaper::shape(const PieceStyle& style, std::string_view text) {
  hb_buffer_t* buffer = buffer_.get();
  hb_buffer_clear_contents(buffer);
  hb_buffer_set_flags(buffer, HB_BUFFER_FLAG_REMOVE_DEFAULT_IGNORABLES);
  hb_buffer_set_direction(buffer, style.isRightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
  hb_buffer_set_script(buffer, style.script);
  hb_buffer_set_language(buffer, style.language);
  hb_buffer_add_utf8(buffer, text.data(), static_cast<int>(text.size()), 0, static_cast<int>(text.size()));
  const bool western = isWesternScript(style.script);
  // Without memory the library goes on with what it has; a word must not lose its letters.
  const bool isShaped = hb_shape_full(style.face->font(), buffer, western ? kNoLigatures : nullptr,
                                      western ? std::size(kNoLigatures) : 0, nullptr) != 0;
  if (!isShaped || !hb_buffer_allocation_successful(buffer)) throw std::bad_alloc();

  unsigned count = 0;
  const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
  const hb_glyph_position_t* places = hb_buffer_get_glyph_positions(buffer, &count);
  glyphs_.clear();
  for (unsigned i = 0; i < count; ++i) {
    glyphs_.push_back(
        {infos[i].codepoint, infos[i].cluster, places[i].x_advance, places[i].x_offset, places[i].y_offset});
  }
  return glyphs_;
}

std::int64_t Shaper::measure(const PieceStyle& style, std::string_view text) { return widthOf(shape(style, text)); }

}  // namespace chatsum::platform::system
