// The text of a message with the marks of its attachments (U+FFFC) and app cards (U+FFFD). No state, any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/words/MessageFiles.h"

namespace chatsum::device {

/// Whether anything was written beside marks and white space.
[[nodiscard]] bool holdsWords(std::string_view text);

/// The text without the marks of app cards.
[[nodiscard]] std::string withoutCardMarks(std::string_view text);

/// Puts the files in the order of their marks: `guids` are those that the body names, in the order of the text. Files
/// that it does not name keep their places.
[[nodiscard]] std::vector<MessageFile> inOrderOfMarks(std::vector<MessageFile> files,
                                                      const std::vector<std::string>& guids);

/// The text with the files' names in brackets in the places of the marks, and what was typed between as `typed` shows
/// it (see ShownWords.h). Files without a mark follow when no row of their own tells of them. White space at the ends
/// goes.
[[nodiscard]] std::string withFileNames(std::string_view text, const std::vector<MessageFile>& files,
                                        std::string (*typed)(std::string_view));

/// The pieces of a message as reactions number them: each attachment and each stretch of words between.
struct MessagePieces {
  std::size_t count = 0;
  std::vector<std::optional<std::size_t>> files;  ///< by piece: the place in the list of files, none for words
};
[[nodiscard]] MessagePieces piecesOf(std::string_view text, std::size_t files);

}  // namespace chatsum::device
