// Text for a terminal: how many cells it takes, and nothing in it that a terminal would obey. No state, any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace chatsum::cli {

/// The cells of a text that has no control characters: none for combining marks, two for wide letters and emoji.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// Valid UTF-8 in which line ends and tabs are the only control characters: others, and those that change the order in
/// which characters are shown (UAX #9), become blanks.
[[nodiscard]] std::string harmless(std::string_view text);

/// The same on one line: line ends and tabs become blanks, too.
[[nodiscard]] std::string oneLine(std::string_view text);

/// The text on one line, cut to so many cells at most, "…" at its end when it was longer.
[[nodiscard]] std::string shortened(std::string_view text, std::size_t cells);

/// Rows under a row of titles, columns two cells apart; those whose title begins with a blank are right-aligned (the
/// blank is not printed). Each cell is put on one line. The last column is not padded.
[[nodiscard]] std::string table(const std::vector<std::string>& titles, std::vector<std::vector<std::string>> rows);

}  // namespace chatsum::cli
