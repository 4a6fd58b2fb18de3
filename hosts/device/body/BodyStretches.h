// Reads what a message's archived body says about stretches of its text. Free functions without state, usable from any
// thread; every input is safe.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace chatsum::device {

/// A stretch of the text; stretches follow one another.
struct BodyStretch {
  std::uint64_t utf16Length = 0;  ///< in UTF-16 code units
  std::int64_t partNumber = 0;    ///< which piece of the message this is
  std::string fileGuid;           ///< the attachment that a U+FFFC stands for, maybe with "at_<part>_" in front
  std::string transcription;      ///< the spoken words of a voice message
};

/// The stretches of a typedstream, as far as it can be read; none for other bodies.
[[nodiscard]] std::vector<BodyStretch> decodeStretches(std::string_view blob);

}  // namespace chatsum::device
