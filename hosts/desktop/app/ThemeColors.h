// The colours of the window, made of the three that a system gives: paper, ink and accent. No state, any thread.
#pragma once

#include <QColor>

namespace chatsum::desktop {

/// How well one colour reads on the other, 1 (not at all) to 21 (WCAG 2.1, contrast ratio).
[[nodiscard]] double contrastOf(const QColor& one, const QColor& other);
/// `share` (0 to 1) of one colour and the rest of the other, opaque.
[[nodiscard]] QColor mixed(const QColor& one, const QColor& other, double share);
/// The colour moved away from the background until it reads at least so well on it, as far as black or white go.
[[nodiscard]] QColor readable(const QColor& color, const QColor& background, double contrast);

struct ThemeColors {
  QColor window, pane, raised, line, hover;
  QColor text, softText;
  QColor accent, textOnAccent, accentSoft;
  QColor bubbleMine, bubbleMineText, bubbleTheirs, bubbleTheirsText;
  QColor danger, focus, hit;
  bool isDark = false;

  [[nodiscard]] static ThemeColors from(const QColor& paper, const QColor& ink, const QColor& accent);
};

}  // namespace chatsum::desktop
