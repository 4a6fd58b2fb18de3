// Lays out texts for one thread: the modes of line breaking, on top of the composer and the line builder.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/interfaces/Graphics.h"
#include "platform/system/text/Composer.h"
#include "platform/system/text/FontLibrary.h"
#include "platform/system/text/LineBuilder.h"
#include "platform/system/text/TextLayout.h"
#include "platform/system/text/TextSurvey.h"

namespace chatsum::platform::system {

class Typesetter {
 public:
  Typesetter(FontLibrary& fonts, PieceCache& pieces, WordTable& words);

  /// Sends every text through ICU as a whole. It makes no difference but for the time it takes; tests hold both ways
  /// against each other.
  void avoidWords() { avoidsWords_ = true; }

  /// Appends a layout of the text, or of its newlines turned to spaces and no more than one line.
  void layOut(std::string_view text, const UIFont& font, double width, LineBreakMode mode, bool onOneLine,
              LayoutStore& store);

 private:
  struct Font {
    std::string name;
    const NamedFont* font;
    const KeptPiece* space;  // nullptr when there is no font
  };

  const Font& fontNamed(const std::string& name);
  [[nodiscard]] TextSurvey surveyOf(std::string_view text) const;
  void addLine(std::string_view line, const TextSurvey& survey);

  // The modes that truncate.
  void addTruncated(std::string_view line, LineBreakMode mode);
  [[nodiscard]] bool fits(std::string_view line, const TextSurvey& survey);
  /// The line of which the first and last clusters are left.
  [[nodiscard]] std::string_view shortened(std::string_view line, std::size_t first, std::size_t last);

  FontLibrary* fonts_;
  Composer composer_;
  LineBuilder lines_, trial_;
  LayoutStore trialStore_;
  std::vector<Font> known_;
  bool avoidsWords_ = false;

  const Font* font_ = nullptr;
  double size_ = 0, width_ = 0;
  std::string clean_, shortened_, joined_;
  Paragraph clusters_;
  std::vector<std::uint32_t> places_;  // where clusters begin, bytes, and the end
};

}  // namespace chatsum::platform::system
