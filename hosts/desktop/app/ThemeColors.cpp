#include "hosts/desktop/app/ThemeColors.h"

#include <algorithm>
#include <cmath>

namespace chatsum::desktop {
namespace {

// What small text needs to be read by most people, and what is enough for shapes (WCAG 2.1, level AA).
constexpr double kTextContrast = 4.5, kShapeContrast = 3;
// On the paper itself, so that enough is left on what is tinted.
constexpr double kInkContrast = 8;

double linear(float channel) {
  const double value = channel;
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminanceOf(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

}  // namespace

double contrastOf(const QColor& one, const QColor& other) {
  const double first = luminanceOf(one), second = luminanceOf(other);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor mixed(const QColor& one, const QColor& other, double share) {
  const auto channel = [share](float from, float to) { return static_cast<float>(from * share + to * (1 - share)); };
  return QColor::fromRgbF(channel(one.redF(), other.redF()), channel(one.greenF(), other.greenF()),
                          channel(one.blueF(), other.blueF()));
}

QColor readable(const QColor& color, const QColor& background, double contrast) {
  const QColor end = luminanceOf(background) > 0.18 ? QColor(Qt::black) : QColor(Qt::white);
  constexpr int kSteps = 50;
  for (int step = 0; step < kSteps; ++step) {
    const QColor tried = mixed(end, color, static_cast<double>(step) / kSteps);
    if (contrastOf(tried, background) >= contrast) return tried;
  }
  return end;
}

ThemeColors ThemeColors::from(const QColor& paper, const QColor& ink, const QColor& accent) {
  ThemeColors colors;
  colors.isDark = luminanceOf(paper) < luminanceOf(ink);
  const QColor mainInk = readable(ink, paper, kInkContrast);
  const bool isDark = colors.isDark;
  colors.window = paper;
  colors.pane = mixed(mainInk, paper, isDark ? 0.045 : 0.035);
  colors.raised = isDark ? mixed(mainInk, paper, 0.085) : paper;
  colors.line = mixed(mainInk, paper, isDark ? 0.16 : 0.12);
  colors.hover = mixed(mainInk, paper, isDark ? 0.1 : 0.07);
  colors.text = mainInk;
  colors.softText = readable(mixed(mainInk, paper, 0.62), colors.hover, kTextContrast);

  // White is what people know on a coloured bubble; the colour gives way to it.
  colors.textOnAccent = Qt::white;
  colors.bubbleMine = readable(accent, colors.textOnAccent, kTextContrast);
  colors.bubbleMineText = colors.textOnAccent;
  colors.bubbleTheirs = mixed(mainInk, paper, isDark ? 0.15 : 0.085);
  colors.bubbleTheirsText = readable(mainInk, colors.bubbleTheirs, kTextContrast);
  colors.accentSoft = mixed(accent, paper, isDark ? 0.3 : 0.16);
  // The accent is also written with, on the softest of its own kind as well.
  colors.accent = readable(accent, colors.accentSoft, kTextContrast);
  colors.focus = readable(accent, paper, kShapeContrast);

  colors.danger = readable(QColor(0xd1, 0x2f, 0x2f), colors.hover, kTextContrast);
  colors.hit = mixed(QColor(0xff, 0xc4, 0x2e), paper, isDark ? 0.5 : 0.6);
  return colors;
}

}  // namespace chatsum::desktop
