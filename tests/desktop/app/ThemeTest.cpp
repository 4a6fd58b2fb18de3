#include "hosts/desktop/app/Theme.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>

namespace chatsum::desktop {
namespace {

constexpr double kText = 4.5;

/// Every pair of colours where one is written on the other.
void expectReadable(const ThemeColors& colors, const char* what) {
  const QColor grounds[] = {colors.window, colors.pane, colors.raised, colors.hover};
  for (const QColor& ground : grounds) {
    EXPECT_GE(contrastOf(colors.text, ground), kText) << what;
    EXPECT_GE(contrastOf(colors.softText, ground), kText * 0.97) << what;
    EXPECT_GE(contrastOf(colors.danger, ground), kText * 0.97) << what;
  }
  EXPECT_GE(contrastOf(colors.bubbleMineText, colors.bubbleMine), kText) << what;
  EXPECT_GE(contrastOf(colors.bubbleTheirsText, colors.bubbleTheirs), kText) << what;
  EXPECT_GE(contrastOf(colors.text, colors.accentSoft), kText) << what;
  EXPECT_GE(contrastOf(colors.accent, colors.accentSoft), kText) << what;
  EXPECT_GE(contrastOf(colors.focus, colors.window), 3) << what;
}

TEST(ThemeColors, ContrastIsThatOfTheGuidelines) {
  EXPECT_NEAR(contrastOf(Qt::white, Qt::black), 21, 0.01);
  EXPECT_NEAR(contrastOf(Qt::white, Qt::white), 1, 0.01);
  EXPECT_NEAR(contrastOf(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
}

TEST(ThemeColors, EverythingCanBeReadInBothSchemes) {
  const QColor accents[] = {QColor(0x30, 0x8c, 0xc6), Qt::yellow, Qt::red,
                            QColor(0x22, 0x22, 0x66), Qt::white,  Qt::black};
  for (const QColor& accent : accents) {
    expectReadable(ThemeColors::from(Qt::white, QColor(0x1c, 0x1e, 0x21), accent), "light");
    expectReadable(ThemeColors::from(QColor(0x1b, 0x1c, 0x1f), QColor(0xec, 0xee, 0xf1), accent), "dark");
  }
}

TEST(ThemeColors, PaleInkIsMadeReadable) {
  expectReadable(ThemeColors::from(Qt::white, QColor(0xbb, 0xbb, 0xbb), Qt::blue), "pale");
}

TEST(Theme, FollowsThePaletteOfTheSystem) {
  Theme theme;
  EXPECT_FALSE(theme.isDark());
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(0x20, 0x20, 0x20));
  dark.setColor(QPalette::Text, Qt::white);
  QSignalSpy changed(&theme, &Theme::changed);
  QGuiApplication::setPalette(dark);
  EXPECT_TRUE(theme.isDark());
  EXPECT_GE(changed.count(), 1);
  EXPECT_EQ(theme.window(), QColor(0x20, 0x20, 0x20));
}

TEST(Theme, AChosenSchemeGoesBeforeTheSystem) {
  Theme theme;
  theme.setScheme(Theme::Dark);
  EXPECT_TRUE(theme.isDark());
  theme.setScheme(Theme::Light);
  EXPECT_FALSE(theme.isDark());
  theme.setScheme(Theme::System);
  EXPECT_FALSE(theme.isDark());
}

TEST(Theme, SizesFollowTheFontButAreNeverTiny) {
  Theme theme;
  QFont font = QGuiApplication::font();
  font.setPixelSize(8);
  QGuiApplication::setFont(font);
  EXPECT_EQ(theme.fontSize(), 14);
  font.setPixelSize(22);
  QGuiApplication::setFont(font);
  EXPECT_EQ(theme.fontSize(), 22);
  EXPECT_GT(theme.titleSize(), theme.largeSize());
  EXPECT_GT(theme.largeSize(), theme.fontSize());
  EXPECT_LT(theme.smallSize(), theme.fontSize());
}

TEST(Theme, CanHoldStill) {
  Theme theme;
  EXPECT_GT(theme.moment(), 0);
  theme.setMoves(false);
  EXPECT_EQ(theme.moment(), 0);
}

}  // namespace
}  // namespace chatsum::desktop
