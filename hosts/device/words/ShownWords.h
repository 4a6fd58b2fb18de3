// Small pieces of the lines that say what a message is: texts of others made fit to stand inside a line, and times.
// No state, any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace chatsum::device {

/// The text on one line: valid UTF-8, every run of white space, line ends and control characters one space, none at
/// the ends.
[[nodiscard]] std::string onOneLine(std::string_view text);

/// A name of a person or a file inside square brackets: on one line, its own square brackets round ones, and no longer
/// than names are.
[[nodiscard]] std::string nameInWords(std::string_view name);

/// What somebody wrote, as it stands beside words of ours in square brackets: each "[" is doubled, so that nobody can
/// type what passes for ours. One right behind a letter or a digit stays as it is, since none of ours stands there.
[[nodiscard]] std::string typedText(std::string_view text);

/// What somebody wrote, inside square brackets of ours: its own are doubled, both kinds, so that none ends ours.
[[nodiscard]] std::string typedInBrackets(std::string_view text);

/// What somebody wrote, on one line between “ and ” inside square brackets of ours, no longer than `most` characters;
/// what is cut off shows as "…". Characters are never cut apart, and words only when they are long.
[[nodiscard]] std::string quoted(std::string_view text, std::size_t most);
/// The same for a text whose own brackets are doubled already.
[[nodiscard]] std::string quotedDoubled(std::string_view text, std::size_t most);

/// "2024-05-03 18:05" in the local zone for a number as stores keep dates (see StoredDate.h); empty for none.
[[nodiscard]] std::string minuteOfStored(std::int64_t stored);

/// Adds a piece behind a space, which none is needed at the start.
void addPiece(std::string& line, std::string_view piece);

}  // namespace chatsum::device
