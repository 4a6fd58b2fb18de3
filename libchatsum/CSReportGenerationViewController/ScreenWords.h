// The words of the report screen: translations, and what the file formats are called. Any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace chatsum::screen_words {

/// The text under an English key in the host's string table; the key itself when there is none.
[[nodiscard]] std::string localized(std::string_view key);
/// The translated format with its one "%@" replaced by the word.
[[nodiscard]] std::string localizedWith(std::string_view format, std::string_view word);

/// The codes of the file formats that can be chosen are 0 to kFormats - 1.
inline constexpr std::uint64_t kFormats = 3;
/// What a file format is called on the screen, never translated; empty for another code.
[[nodiscard]] std::string_view formatName(std::uint64_t fileFormat);
/// The extension of the file format's files; empty for another code.
[[nodiscard]] std::string_view formatExtension(std::uint64_t fileFormat);

/// ASCII letters only, as the extensions of report files are.
[[nodiscard]] std::string lowerCase(std::string_view text);
[[nodiscard]] std::string upperCase(std::string_view text);

/// The text without white space (separators of Unicode category Zs, tabs) at both ends.
[[nodiscard]] std::string trimmed(std::string_view text);

}  // namespace chatsum::screen_words
