#include "platform/system/text/Words.h"

#include <unicode/uchar.h>

#include "platform/foundation/Utf8.h"

namespace chatsum::platform::system {
namespace {

int lineBreakClass(char32_t c) { return u_getIntPropertyValue(static_cast<UChar32>(c), UCHAR_LINE_BREAK); }

bool isAsciiQuote(char32_t c) { return c == '"' || c == '\''; }

/// The code point that ends the text.
char32_t lastOf(std::string_view text) {
  std::size_t at = text.size();
  do --at;
  while (at > 0 && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U);
  return utf8::next(text, at);
}

/// Classes with which a line may both begin and end.
bool isPlain(int lineBreak) {
  switch (lineBreak) {
    case U_LB_ALPHABETIC:
    case U_LB_HEBREW_LETTER:
    case U_LB_NUMERIC:
    case U_LB_IDEOGRAPHIC:
    case U_LB_H2:
    case U_LB_H3:
    case U_LB_E_BASE:
    case U_LB_PREFIX_NUMERIC:
    case U_LB_POSTFIX_NUMERIC:
    case U_LB_REGIONAL_INDICATOR:
      return true;
    default:
      return false;
  }
}

}  // namespace

WordEdge firstEdgeOf(std::string_view word) {
  std::size_t at = 0;
  const char32_t c = utf8::next(word, at);
  if (isAsciiQuote(c)) return WordEdge::kPlain;
  const int lineBreak = lineBreakClass(c);
  if (lineBreak == U_LB_OPEN_PUNCTUATION) return WordEdge::kOpening;
  return isPlain(lineBreak) ? WordEdge::kPlain : WordEdge::kSpecial;
}

WordEdge lastEdgeOf(std::string_view word) {
  const char32_t c = lastOf(word);
  if (isAsciiQuote(c)) return WordEdge::kQuote;
  switch (const int lineBreak = lineBreakClass(c)) {
    // What closes keeps only U_LB_NONSTARTER from the next line, which is no plain beginning.
    case U_LB_CLOSE_PUNCTUATION:
    case U_LB_CLOSE_PARENTHESIS:
    case U_LB_EXCLAMATION:
    case U_LB_INFIX_NUMERIC:
    case U_LB_BREAK_SYMBOLS:
    case U_LB_HYPHEN:
    case U_LB_BREAK_AFTER:
    case U_LB_INSEPARABLE:
      return WordEdge::kPlain;
    default:
      return isPlain(lineBreak) ? WordEdge::kPlain : WordEdge::kSpecial;
  }
}

}  // namespace chatsum::platform::system
