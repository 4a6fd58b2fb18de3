// Texts that are taller than a page of a report. They are measured as the writer measures them, so that no line is
// lost. The platform has to be installed; one thread at a time.
#pragma once

#include <unicode/ubrk.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace chatsum::device {

class PageTexts {
 public:
  /// A quick look at the bytes: false for a text that fits on a page whatever its letters are.
  [[nodiscard]] static bool mayBeTall(std::string_view text);
  /// Whether it does not fit on a page.
  [[nodiscard]] static bool isTall(std::string_view text);

  /// The text in pieces that fit on a page each; the second and later ones say that they continue, and run in the
  /// direction of what they continue. Texts are cut behind lines, else behind words, else between characters. One piece
  /// is the text itself.
  [[nodiscard]] std::vector<std::string> piecesOf(std::string_view text);

 private:
  struct Close {
    void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
  };

  /// How much of the text fits behind `lead`, in bytes, cut at a good place; at least one character.
  [[nodiscard]] std::size_t fittingBytes(const std::string& lead, std::string_view text);
  /// The best place to cut at or before `most`, which is inside the text; 0 when there is none.
  [[nodiscard]] std::size_t placeToCut(std::string_view text, std::size_t most);
  /// The last end of a character at or before `most`; 0 when there is none.
  [[nodiscard]] std::size_t endOfCharacter(std::string_view text, std::size_t most);

  std::unique_ptr<UBreakIterator, Close> characters_;
};

}  // namespace chatsum::device
