// The last few layouts that were asked for, so that what is measured and then drawn is laid out once, and where each was
// drawn last. One thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/interfaces/Graphics.h"
#include "platform/system/text/TextEngine.h"

namespace chatsum::platform::system {

class LayoutMemo {
 public:
  /// One drawing of a text; an equal one at the same place need not be repeated.
  struct Drawing {
    std::size_t page = 0;  ///< 0: not drawn, or covered since
    Rect rect;
    Color color;
    TextAlignment alignment = TextAlignment::kLeft;
    friend bool operator==(const Drawing&, const Drawing&) = default;
  };
  struct Entry {
    std::string text;
    UIFont font;
    double width = 0;
    LineBreakMode mode = LineBreakMode::kWordWrap;
    bool isSingleLine = false;
    LayoutStore store;
    Drawing lastDrawing;
    std::uint64_t lastUse = 0;

    [[nodiscard]] TextLayout layout() const { return store[0]; }
  };

  /// The entry of a text, laid out now if it is not among the last ones. Good until the next call.
  [[nodiscard]] Entry& entryFor(std::string_view text, const UIFont& font, double width, LineBreakMode mode,
                                bool isSingleLine, TextEngine& engine);

  /// Something else was drawn there: what it may cover is worth drawing again.
  void forgetDrawingsIn(const Rect& area);

 private:
  static constexpr std::size_t kEntries = 6;

  std::array<Entry, kEntries> entries_;
  std::uint64_t uses_ = 0;
};

}  // namespace chatsum::platform::system
