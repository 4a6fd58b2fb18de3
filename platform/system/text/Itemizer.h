// Cuts a paragraph into items that are shaped in one go: same face, script and direction, no end of line inside. One
// thread at a time.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/system/text/CharacterTraits.h"
#include "platform/system/text/FontLibrary.h"
#include "platform/system/text/Paragraph.h"
#include "platform/system/text/Shaper.h"

namespace chatsum::platform::system {

struct TextItem {
  enum class Kind : std::uint8_t { kText, kSpaces, kTab };
  std::uint32_t begin = 0, end = 0;  ///< UTF-16 code units of the paragraph
  Kind kind = Kind::kText;
  std::uint8_t level = 0;  ///< of direction (UAX #9)
  bool mayBreak = false;   ///< a line may end behind it
  PieceStyle style;        ///< of kText
};

class Itemizer {
 public:
  explicit Itemizer(FontLibrary& fonts) : fonts_(&fonts) {}

  /// The items in logical order, valid until the next call.
  [[nodiscard]] const std::vector<TextItem>& itemize(const Paragraph& paragraph, const NamedFont& font,
                                                     HanLanguage han);

 private:
  /// A grapheme cluster of a word.
  struct Cluster {
    std::uint32_t begin, end;
    UScriptCode script;
    const FontFace* face;
    bool isEmoji;
  };
  /// Longer items are cut between clusters: a word of any length takes linear time and memory.
  static constexpr std::uint32_t kLongestItem = 256;
  /// Emoji that join without end take HarfBuzz long; the longest that means something has 19 code units.
  static constexpr std::uint32_t kLongestEmoji = 40;

  void addWord(const Paragraph& paragraph, std::uint32_t begin, std::uint32_t end, const NamedFont& font,
               HanLanguage han);
  void findScripts();
  const FontFace* faceFor(std::u16string_view cluster, const Cluster& traits, const NamedFont& font, HanLanguage han);
  const FontFace* fallbackFor(char32_t c, UScriptCode script, HanLanguage han, bool asEmoji);

  FontLibrary* fonts_;
  std::vector<TextItem> items_;
  std::vector<Cluster> clusters_;
  // What the library answered last, so that it is not locked for every character.
  struct Answer {
    std::uint64_t key = ~std::uint64_t{0};
    const FontFace* face = nullptr;
  };
  std::array<Answer, 512> answers_;
};

}  // namespace chatsum::platform::system
