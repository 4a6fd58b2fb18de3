// A first look over a text: which way it can be laid out, and whether it must be cleaned before. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::platform::system {

struct TextSurvey {
  bool isClean = true;           ///< valid UTF-8 without hidden controls
  bool hasNewlines = false;      ///< or what may be one
  bool isBidirectional = false;  ///< may run from right to left
  /// Words and the spaces between them, nothing that reaches across: neither tabs nor marks on a space.
  bool isPlain = true;
};

[[nodiscard]] TextSurvey survey(std::string_view text);

/// Appends the text, repaired and without controls that show nothing. Each newline becomes a "\n", or a space.
void appendClean(std::string& result, std::string_view text, bool newlinesAsSpaces);

/// Takes the first of the text's own lines out of clean text, together with its newline.
[[nodiscard]] std::string_view takeLine(std::string_view& text);

}  // namespace chatsum::platform::system
