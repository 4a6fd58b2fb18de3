// Runs the tests of one folder in a program with a window system in memory and the same fonts everywhere.
#include <gmock/gmock.h>

#include <QGuiApplication>
#include <clocale>
#include <cstdlib>

#include "hosts/desktop/app/Fonts.h"
#include "tests/support/PinnedFonts.h"

int main(int argumentCount, char** arguments) {
  ::testing::InitGoogleMock(&argumentCount, arguments);
  const chatsum::test::PinnedFonts fonts;
  // Also when it is not CTest that runs this.
  ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
  ::setenv("QT_QUICK_BACKEND", "software", 1);
  const QGuiApplication application(argumentCount, arguments);
  std::setlocale(LC_NUMERIC, "C");
  QGuiApplication::setFont(chatsum::desktop::fontWithEmoji(QFont(QStringLiteral("Noto Sans"), 10)));
  return RUN_ALL_TESTS();
}
