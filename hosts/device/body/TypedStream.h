// Reads the text out of a message's archived body (the column `attributedBody`).
// Free functions without state, usable from any thread. Every input is safe: a hostile body costs time linear in its
// length, no recursion beyond a fixed depth and no exception but running out of memory.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::device {

enum class BodyStatus {
  kDecoded,      ///< The archive was well formed up to the end of its text.
  kRecovered,    ///< The archive is damaged; the text is what could be saved.
  kUndecodable,  ///< No text could be found.
};

/// What a body says. `text` is always valid UTF-8 and may be empty for a decoded body (an empty message); it is empty
/// when the body is undecodable. U+FFFC stands for one attachment each, U+FFFD for an app card.
struct BodyText {
  std::string text;
  BodyStatus status = BodyStatus::kUndecodable;
  /// How many malformed byte sequences of the stored text were replaced by U+FFFD.
  int replacedSequences = 0;
};

/// Decodes a typedstream (little- or big-endian) or a keyed archive in a binary property list. Reading stops as soon
/// as the text is complete, so damage behind it does not matter.
[[nodiscard]] BodyText decodeBody(std::string_view blob);

}  // namespace chatsum::device
