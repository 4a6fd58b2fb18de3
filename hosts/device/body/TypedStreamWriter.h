// Writes a message's archived body (the column `attributedBody`) as Messages does. No state, any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace chatsum::device {

/// One stretch of equal attributes. Runs follow one another and together cover the text.
struct BodyRun {
  std::uint64_t utf16Length = 0;             ///< in UTF-16 code units
  std::int64_t partNumber = 0;               ///< which piece of the message this is
  std::optional<std::string> fileGuid = {};  ///< the attachment that a U+FFFC stands for
  std::string transcription = {};            ///< what is said in it; empty for none
};

/// The typedstream of `text`, which is UTF-8 (little-endian). Without `runs`, a text that is not empty gets one run of
/// part 0 and an empty one none. As on the device, a text with an attachment is written as a mutable string.
[[nodiscard]] std::string encodeBody(std::string_view text, const std::vector<BodyRun>& runs = {});

}  // namespace chatsum::device
