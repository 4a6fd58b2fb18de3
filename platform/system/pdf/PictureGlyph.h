// The picture that a font of colour emoji has for a glyph. No state, any thread.
#pragma once

#include <cstdint>

#include "platform/system/images/Bitmap.h"
#include "platform/system/text/FontFace.h"

namespace chatsum::platform::system {

[[nodiscard]] bool hasPicture(const FontFace& face, std::uint32_t glyph);

/// Empty when there is none, or none that can be read, or one that is far larger than any glyph.
[[nodiscard]] Bitmap pictureOf(const FontFace& face, std::uint32_t glyph);

}  // namespace chatsum::platform::system
