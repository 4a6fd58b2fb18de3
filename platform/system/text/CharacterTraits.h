// What the text engine asks of single characters: how they end lines, which way they run, which script and language
// they belong to, whether they are shown as colour pictures. From ICU's Unicode data. Any thread.
#pragma once

#include <hb.h>
#include <unicode/uscript.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace chatsum::platform::system {

/// Whose forms of the shared Han characters are shown.
enum class HanLanguage : std::uint8_t { kJapanese, kKorean, kSimplifiedChinese, kTraditionalChinese };

/// The characters that end a line: U+000A to U+000D, U+0085, U+2028, U+2029. (UAX #14: BK, CR, LF, NL)
[[nodiscard]] bool isNewline(char32_t c);
/// A control character that shows nothing: neither a newline nor a tab.
[[nodiscard]] bool isHiddenControl(char32_t c);
/// Whether a text with it may not run from left to right all the way: letters and numbers of right-to-left scripts and
/// the controls of direction (UAX #9). Says yes to a few neighbours too.
[[nodiscard]] bool mayRunRightToLeft(char32_t c);
/// Whether it goes with the character before it, even with a space. (UAX #29)
[[nodiscard]] bool joinsBefore(char32_t c);

/// The script of a character; USCRIPT_COMMON or USCRIPT_INHERITED when its neighbours decide.
[[nodiscard]] UScriptCode scriptOf(char32_t c);
/// Whether a Western font has it as a matter of course: Latin, Greek, Cyrillic and what belongs to no script.
[[nodiscard]] bool isWestern(char32_t c);
/// Whether the characters of one grapheme cluster ask to be shown as an emoji picture. (UTS #51)
[[nodiscard]] bool isEmoji(std::u16string_view cluster);
/// Whether it needs no glyph to be shown right.
[[nodiscard]] bool isIgnorable(char32_t c);

[[nodiscard]] hb_script_t shapingScript(UScriptCode script);
/// HB_LANGUAGE_INVALID unless the script's forms depend on it.
[[nodiscard]] hb_language_t shapingLanguage(UScriptCode script, HanLanguage han);
/// The language that a font for the script should be made for, such as "ar"; "en" when the script tells nothing.
[[nodiscard]] std::string languageOf(UScriptCode script, HanLanguage han);

/// From the process's environment (LC_ALL, LC_CTYPE, LANG), else from kana, hangul and bopomofo in the text, else
/// Japanese.
[[nodiscard]] HanLanguage hanLanguageOf(std::string_view text);

}  // namespace chatsum::platform::system
