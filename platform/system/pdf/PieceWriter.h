// Writes one piece of text. One thread at a time.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "platform/system/pdf/PdfFonts.h"
#include "platform/system/pdf/PieceTexts.h"
#include "platform/system/text/TextLayout.h"

namespace chatsum::platform::system {

/// The bytes that show a piece, at that font size where it matters. Its glyphs become part of the fonts.
[[nodiscard]] PieceText pieceText(const Piece& piece, double size, PdfFonts& fonts);

}  // namespace chatsum::platform::system
