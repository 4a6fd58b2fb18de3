// Shapes text and breaks it into lines. Each distinct piece of text is shaped once and kept until the engine goes. Any
// thread, several at once.
#pragma once

#include <memory>
#include <string_view>

#include "platform/interfaces/Graphics.h"
#include "platform/system/text/TextLayout.h"

namespace chatsum::platform::system {

class TextEngine {
 public:
  TextEngine();
  ~TextEngine();
  TextEngine(const TextEngine&) = delete;
  TextEngine& operator=(const TextEngine&) = delete;

  /// Whether any font is there that text can be shown in. Without one a text has no size.
  [[nodiscard]] bool hasFonts();

  /// Appends the layout of a text to the store: broken into lines no wider than `width` (between words by UAX #14;
  /// between grapheme clusters for a word that is wider, and in kCharacterWrap), newlines ending a line, tabs every 28
  /// points. In kClip and the truncation modes there is one line for each of the text's own lines: kClip keeps the
  /// clusters that fit at its beginning, a truncation puts "…" where it left something out.
  ///
  /// `width` counts in whole points, downwards; it may be infinite, and below zero or not a number it is 0. Within the
  /// size that comes out the same lines come out again, unless a single cluster was wider than `width`. Text may be any
  /// bytes: malformed UTF-8 shows U+FFFD, control characters show nothing.
  void layOut(std::string_view text, const UIFont& font, double width, LineBreakMode mode, LayoutStore& store);
  /// The same on a single line: a newline counts as a space, and with kWordWrap what does not fit is left out from the
  /// last break on.
  void layOutLine(std::string_view text, const UIFont& font, double width, LineBreakMode mode, LayoutStore& store);

 private:
  class Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace chatsum::platform::system
