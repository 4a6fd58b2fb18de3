// Makes any bytes valid UTF-8. No state, any thread.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::device {

/// Appends `bytes` to `text`; each maximal malformed sequence becomes one U+FFFD. Answers how many were replaced.
/// NUL and control characters are valid and kept; surrogates and overlong forms are not.
int appendValidUtf8(std::string& text, std::string_view bytes);

/// Appends one code point; a surrogate or a number beyond U+10FFFF becomes U+FFFD.
void appendCodePoint(std::string& text, char32_t codePoint);

/// The length of `bytes` without a sequence at its very end that was cut off in the middle.
[[nodiscard]] std::size_t lengthWithoutPartialTail(std::string_view bytes);

}  // namespace chatsum::device
