// Finds words in the texts of rows, without regard to case. No state, any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/desktop/engine/Cancellation.h"
#include "platform/foundation/Value.h"

namespace chatsum::desktop {

/// The text as `device::foldedCase` has it, with every kind of i as the plain one: what people type to find a word is
/// "istanbul", whether it is written "İstanbul" or "ISTANBUL".
[[nodiscard]] std::string foldedForSearch(std::string_view text);

/// Words to look for in many texts.
class TextSearch {
 public:
  explicit TextSearch(std::string_view words);

  /// Whether nothing is left of the words that could be looked for; then they are in every text.
  [[nodiscard]] bool isEmpty() const { return folded_.empty(); }
  /// Whether the text holds the words, both as `foldedForSearch` has them.
  [[nodiscard]] bool isIn(std::string_view text) const;

 private:
  std::string folded_;
};

/// The places of the rows whose text, or whose file's name, holds the words, ascending; none for no words, or for
/// nothing but characters that nobody sees. Ends early with what was found when it is cancelled.
[[nodiscard]] std::vector<std::uint32_t> findRows(const Array& records, std::string_view words,
                                                  const Cancellation& cancellation);

}  // namespace chatsum::desktop
