// A stretch of one line of the text, up to a few thousand characters, in UTF-16 with all that ICU says about it: where
// lines may end, where grapheme clusters begin, which way the characters run. One thread at a time; used again and
// again, so that nothing is allocated for the next one.
#pragma once

#include <unicode/ubidi.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system/text/BreakIterators.h"

namespace chatsum::platform::system {

class Paragraph {
 public:
  /// Takes valid UTF-8 without newlines; the bytes must stay. All of it runs from left to right at first.
  void assign(std::string_view text, BreakIterators& iterators);
  /// The same without a word about lines and clusters.
  void assignUnmarked(std::string_view text);

  /// Leaves out what stands behind a place.
  void shorten(std::uint32_t size);
  /// Finds the direction of each character (UAX #9). `base` is the paragraph's own level, or UBIDI_DEFAULT_LTR: that of
  /// its first strong character. Answers the paragraph's level.
  UBiDiLevel findLevels(UBiDiLevel base);
  /// Gives all characters from a place on one direction, or those of another paragraph from a place of its own on.
  void setLevels(std::uint32_t place, UBiDiLevel level);
  void setLevels(std::uint32_t place, const Paragraph& other, std::uint32_t otherPlace);

  /// UTF-16 code units.
  [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(units_.size()); }
  [[nodiscard]] char16_t operator[](std::uint32_t place) const { return units_[place]; }
  [[nodiscard]] std::u16string_view units(std::uint32_t begin, std::uint32_t end) const {
    return std::u16string_view(units_).substr(begin, end - begin);
  }
  /// The bytes of these code units in the text given.
  [[nodiscard]] std::string_view bytes(std::uint32_t begin, std::uint32_t end) const {
    return text_.substr(bytes_[begin], bytes_[end] - bytes_[begin]);
  }
  [[nodiscard]] std::uint32_t byteAt(std::uint32_t place) const { return bytes_[place]; }
  /// The first code unit from `place` on that does not stand before a byte.
  [[nodiscard]] std::uint32_t unitAt(std::size_t byte, std::uint32_t place = 0) const {
    while (bytes_[place] < byte) ++place;
    return place;
  }
  /// Whether a line may end before this place; never at 0.
  [[nodiscard]] bool mayBreakAt(std::uint32_t place) const { return (marks_[place] & kLineBreak) != 0; }
  [[nodiscard]] bool isClusterAt(std::uint32_t place) const { return (marks_[place] & kCluster) != 0; }
  [[nodiscard]] bool isOfOneLevel(std::uint32_t begin, std::uint32_t end) const {
    while (begin + 1 < end && levelAt(begin) == levelAt(end - 1)) --end;
    return begin + 1 >= end;
  }
  [[nodiscard]] std::uint8_t levelAt(std::uint32_t place) const { return levels_.empty() ? 0 : levels_[place]; }

 private:
  enum Mark : std::uint8_t { kLineBreak = 1, kCluster = 2 };
  struct Close {
    void operator()(UBiDi* bidi) const { ubidi_close(bidi); }
  };

  std::string_view text_;
  std::u16string units_;
  bool isSimple_ = true;              // no character can join another
  std::vector<std::uint32_t> bytes_;  // of each code unit, and the end
  std::vector<std::uint8_t> marks_;   // of each code unit, and the end
  std::vector<UBiDiLevel> levels_;    // empty when all are 0
  std::unique_ptr<UBiDi, Close> bidi_;
};

}  // namespace chatsum::platform::system
