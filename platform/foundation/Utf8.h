// UTF-8 (RFC 3629) measured the way the platform measures text: in UTF-16 code units.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace chatsum::utf8 {

/// The code point at byte `at`, which moves behind it. A malformed part gives one U+FFFD and is passed over.
[[nodiscard]] char32_t next(std::string_view text, std::size_t& at);

/// Appends a code point; surrogates and values beyond U+10FFFF become U+FFFD.
void append(std::string& text, char32_t codePoint);

/// The number of UTF-16 code units the text takes.
[[nodiscard]] std::size_t utf16Length(std::string_view text);

/// The last `units` UTF-16 code units, whole characters only (a character outside the basic plane that would be cut is
/// left out); the whole text when it is not longer.
[[nodiscard]] std::string_view lastUtf16(std::string_view text, std::size_t units);

[[nodiscard]] bool isValid(std::string_view text);

/// Appends `bytes` to `text`; each maximal malformed part becomes one U+FFFD. Answers how many were replaced. NUL and
/// control characters are valid and kept; surrogates and overlong forms are not.
int appendRepaired(std::string& text, std::string_view bytes);

/// The text as `appendRepaired` appends it.
[[nodiscard]] std::string repaired(std::string_view text);

/// The length of `bytes` without a sequence at its very end that was cut off in the middle.
[[nodiscard]] std::size_t lengthWithoutPartialTail(std::string_view bytes);

}  // namespace chatsum::utf8
