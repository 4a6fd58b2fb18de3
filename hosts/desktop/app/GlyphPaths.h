// The lines of the glyphs. No state, any thread.
#pragma once

#include <QPainterPath>
#include <string_view>

namespace chatsum::desktop {

/// Glyphs are drawn on a square of so many units.
inline constexpr double kGlyphSide = 24;

/// The lines of the glyph of that name; none for a name that is not known.
[[nodiscard]] QPainterPath glyphPath(std::string_view name);

}  // namespace chatsum::desktop
