// Characters that were drawn although no font has them, so that a box stands for each. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace chatsum::platform::system {

struct TextLayout;

/// How many by their script, a code of ISO 15924: "Deva", "Thai", "Zsye" for emoji, "Zsym" for other symbols, "Zzzz"
/// for what no script is known of.
using UnshownCharacters = std::map<std::string, std::uint64_t>;

/// Counts those of the pieces.
void addUnshown(const TextLayout& layout, UnshownCharacters& characters);

/// What the script is called in a language ("de", "zh_TW"): "Devanagari"; the code itself where it has no name.
[[nodiscard]] std::string nameOfScript(const std::string& code, const std::string& language);

}  // namespace chatsum::platform::system
