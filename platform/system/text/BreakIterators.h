// ICU's rules for the ends of lines (UAX #14, with its dictionaries) and of grapheme clusters (UAX #29). One thread at
// a time; loaded when first asked.
#pragma once

#include <unicode/ubrk.h>

#include <memory>
#include <string_view>

namespace chatsum::platform::system {

class BreakIterators {
 public:
  /// Calls `boundary(place)` for each place inside or at the end of the text where a line may end. Places count UTF-16
  /// code units. `Boundary` answers whether to go on.
  template <class Boundary>
  void eachLineBreak(std::u16string_view text, Boundary boundary) {
    each(lines_, UBRK_LINE, text, boundary);
  }
  /// The same for the ends of grapheme clusters.
  template <class Boundary>
  void eachCluster(std::u16string_view text, Boundary boundary) {
    each(clusters_, UBRK_CHARACTER, text, boundary);
  }

 private:
  struct Close {
    void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
  };
  using IteratorRef = std::unique_ptr<UBreakIterator, Close>;

  /// False when ICU cannot serve.
  static bool begin(IteratorRef& iterator, UBreakIteratorType type, std::u16string_view text);

  template <class Boundary>
  static void each(IteratorRef& iterator, UBreakIteratorType type, std::u16string_view text, Boundary boundary) {
    if (text.empty()) return;
    if (!begin(iterator, type, text)) {
      // Without ICU's data every character stands for itself.
      for (std::size_t place = 1; place <= text.size() && boundary(place); ++place) {
      }
      return;
    }
    for (int place = ubrk_next(iterator.get()); place != UBRK_DONE; place = ubrk_next(iterator.get())) {
      if (!boundary(static_cast<std::size_t>(place))) return;
    }
  }

  IteratorRef lines_, clusters_;
};

}  // namespace chatsum::platform::system
