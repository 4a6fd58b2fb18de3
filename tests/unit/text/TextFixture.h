// What the tests of the text engine share: pinned fonts, an engine, and layouts as text.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system/text/TextEngine.h"
#include "tests/support/PinnedFonts.h"

namespace chatsum::platform::system {

inline constexpr double kUnlimited = std::numeric_limits<double>::infinity();

/// What stands on a line, from left to right: pieces of right-to-left text between "‹" and "›", tabs as "→".
inline std::string textOf(const TextLayout& layout, const TextLine& line) {
  std::string text;
  for (std::uint32_t i = line.begin; i < line.end; ++i) {
    const PlacedPiece& placed = layout.pieces[i];
    // Spaces of right-to-left words are made as wide as others by a gap behind them.
    const bool isTab =
        i == line.begin || !layout.pieces[i - 1].piece->isRightToLeft || layout.pieces[i - 1].spaces == 0;
    if (placed.gap > 0 && isTab) text += "→";
    if (placed.piece->isRightToLeft) text += "‹";
    text += placed.piece->text;
    if (placed.piece->isRightToLeft) text += "›";
    text.append(placed.spaces, ' ');
  }
  return text;
}

inline std::vector<std::string> linesOf(const TextLayout& layout) {
  std::vector<std::string> lines;
  for (const TextLine& line : layout.lines) lines.push_back(textOf(layout, line));
  return lines;
}

/// How wide a line is drawn, points.
inline double drawnWidth(const TextLayout& layout, const TextLine& line) {
  double width = 0;
  for (std::uint32_t i = line.begin; i < line.end; ++i) {
    const PlacedPiece& placed = layout.pieces[i];
    const FontFace& face = *placed.piece->face;
    const int space = face.advanceOf(face.glyphFor(' '));
    width += placed.gap;
    width += (placed.piece->width + static_cast<double>(placed.spaces) * space) * layout.fontSize / face.unitsPerEm();
  }
  return width;
}

class TextEngineTest : public ::testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  TextLayout layOut(std::string_view text, double width = kUnlimited, LineBreakMode mode = LineBreakMode::kWordWrap) {
    store_.clear();
    engine_.layOut(text, font_, width, mode, store_);
    return store_[0];
  }
  TextLayout layOutLine(std::string_view text, double width, LineBreakMode mode) {
    store_.clear();
    engine_.layOutLine(text, font_, width, mode, store_);
    return store_[0];
  }
  /// Never wider than asked for, as high and wide as its lines, drawn as wide as it says, and the same again within its
  /// own size.
  void expectSound(std::string_view text, double width, LineBreakMode mode = LineBreakMode::kWordWrap) {
    const TextLayout layout = layOut(text, width, mode);
    const Lines lines = linesOf(layout);
    const Size size = layout.size;
    double height = 0, widest = 0;
    for (const TextLine& line : layout.lines) {
      EXPECT_NEAR(line.width, drawnWidth(layout, line), 0.01) << text;
      EXPECT_LE(line.width, width) << text;
      EXPECT_LE(line.baseline, line.height);
      height += line.height;
      widest = std::max(widest, static_cast<double>(line.width));
    }
    EXPECT_EQ(size, (Size{std::ceil(widest - 1e-5), height})) << text;
    EXPECT_EQ(linesOf(layOut(text, size.width, mode)), lines) << text << " within " << size.width;
  }

  test::PinnedFonts fonts_;
  TextEngine engine_;
  UIFont font_{"Verdana", 14};
  LayoutStore store_;
};

}  // namespace chatsum::platform::system
