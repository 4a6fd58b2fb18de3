// Finds words in the texts of rows, without regard to case. No state, any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/desktop/engine/Cancellation.h"
#include "platform/foundation/Value.h"

namespace chatsum::desktop {

/// Words to look for in many texts.
class TextSearch {
 public:
  explicit TextSearch(std::string_view words);

  /// Whether the text holds the words, both as `device::foldedCase` has them.
  [[nodiscard]] bool isIn(std::string_view text) const;

 private:
  std::string folded_;
};

/// The places of the rows whose text, or whose file's name, holds the words, ascending; none for no words. Ends early
/// with what was found when it is cancelled.
[[nodiscard]] std::vector<std::uint32_t> findRows(const Array& records, std::string_view words,
                                                  const Cancellation& cancellation);

}  // namespace chatsum::desktop
