// Reads the text of an attributed string that was archived as a binary property list (a keyed archive).
// No state, any thread; safe on hostile input: no recursion, every offset checked, a fixed number of references
// followed.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace chatsum::device {

inline constexpr std::string_view kBinaryPropertyListStart = "bplist00";

struct ArchivedText {
  std::string text;           ///< valid UTF-8
  int replacedSequences = 0;  ///< malformed sequences (lone surrogates too) that became U+FFFD
};

/// The string of the archive's root: the root itself, or what stands under its `NS.string` or `NSString`.
[[nodiscard]] std::optional<ArchivedText> readKeyedArchive(std::string_view blob);

}  // namespace chatsum::device
