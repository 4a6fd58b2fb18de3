// Fonts of the window. No state, any thread.
#pragma once

#include <QFont>
#include <QFontInfo>

namespace chatsum::desktop {

/// The font, and for what it has no drawing of, first the coloured one for emoji: left to itself, the system may choose
/// a font of lines for them.
[[nodiscard]] inline QFont fontWithEmoji(QFont font) {
  // By the name of the font that is there: a name such as "Sans Serif" would leave digits and spaces to the second one.
  font.setFamilies({QFontInfo(font).family(), QStringLiteral("Noto Color Emoji")});
  return font;
}

}  // namespace chatsum::desktop
