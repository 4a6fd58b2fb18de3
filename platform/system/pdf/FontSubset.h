// The part of a font that a document embeds. No state, any thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/system/text/FontFace.h"

namespace chatsum::platform::system {

/// Which glyphs are needed.
struct FontUsage {
  std::vector<std::uint32_t> glyphs;  ///< ascending, each once
  std::string ascii;                  ///< characters shown by themselves, ascending, each once
};

/// A TrueType file of just the tables that PDF wants (ISO 32000-1, 9.9). Glyphs keep their numbers; the character map
/// holds the ASCII characters alone.
[[nodiscard]] std::string trueTypeSubset(const FontFace& face, const FontUsage& usage);

/// A bare CFF font. Glyphs keep their numbers, or in a CID-keyed font their characters.
[[nodiscard]] std::string cffSubset(const FontFace& face, const FontUsage& usage, bool isCidKeyed);

}  // namespace chatsum::platform::system
