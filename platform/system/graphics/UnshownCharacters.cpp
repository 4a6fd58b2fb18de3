#include "platform/system/graphics/UnshownCharacters.h"

#include <unicode/uchar.h>
#include <unicode/uloc.h>
#include <unicode/uscript.h>
#include <unicode/utf16.h>

#include <array>
#include <string_view>

#include "platform/foundation/Utf8.h"
#include "platform/system/text/TextLayout.h"

namespace chatsum::platform::system {
namespace {

std::string scriptOfFirst(std::string_view text) {
  std::size_t at = 0;
  const auto c = static_cast<UChar32>(utf8::next(text, at));
  UErrorCode error = U_ZERO_ERROR;
  const UScriptCode script = uscript_getScript(c, &error);
  if (U_FAILURE(error) || script == USCRIPT_UNKNOWN) return "Zzzz";
  if (script != USCRIPT_COMMON && script != USCRIPT_INHERITED) return uscript_getShortName(script);
  return u_hasBinaryProperty(c, UCHAR_EXTENDED_PICTOGRAPHIC) || u_hasBinaryProperty(c, UCHAR_REGIONAL_INDICATOR)
             ? "Zsye"
             : "Zsym";
}

}  // namespace

void addUnshown(const TextLayout& layout, UnshownCharacters& characters) {
  for (const TextLine& line : layout.lines) {
    for (const PlacedPiece& placed : layout.pieces.subspan(line.begin, line.end - line.begin)) {
      if (!placed.piece || !placed.piece->lacksGlyphs) continue;
      for (const Glyph& glyph : placed.piece->glyphs) {
        if (glyph.id == 0) ++characters[scriptOfFirst(placed.piece->text.substr(glyph.cluster))];
      }
    }
  }
}

std::string nameOfScript(const std::string& code, const std::string& language) {
  std::array<char16_t, 128> name{};
  UErrorCode error = U_ZERO_ERROR;
  const int length = uloc_getDisplayScript(("und_" + code).c_str(), language.c_str(), name.data(),
                                           static_cast<int>(name.size()), &error);
  if (U_FAILURE(error) || length <= 0) return code;
  std::string shown;
  for (int at = 0; at < length;) {
    char32_t c = 0;
    U16_NEXT(name.data(), at, length, c);
    utf8::append(shown, c);
  }
  return shown;
}

}  // namespace chatsum::platform::system
