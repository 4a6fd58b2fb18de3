// The program chatsum-desktop.
#include <QGuiApplication>
#include <QQuickStyle>
#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "hosts/desktop/app/Application.h"
#include "hosts/desktop/app/Arguments.h"
#include "hosts/desktop/app/EndSignals.h"
#include "hosts/desktop/app/Fonts.h"

namespace {

bool isAboutTheProgram(std::string_view word) { return word == "--help" || word == "-h" || word == "--version"; }

int endWith(const chatsum::desktop::Arguments::Ending& ending) {
  std::fputs(qPrintable(ending.text), ending.code == 0 ? stdout : stderr);
  return ending.code;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  using namespace chatsum;
  desktop::handleEndSignals();
  QCoreApplication::setApplicationName(QStringLiteral("Chatsum"));
  QGuiApplication::setDesktopFileName(QStringLiteral("chatsum-desktop"));
  const std::vector<std::string_view> words(arguments + 1, arguments + argumentCount);
  if (std::any_of(words.begin(), words.end(), isAboutTheProgram)) {
    const QCoreApplication withoutDisplay(argumentCount, arguments);
    return endWith(
        desktop::Arguments::parse(QCoreApplication::arguments()).ending.value_or(desktop::Arguments::Ending()));
  }
  QGuiApplication application(argumentCount, arguments);
  // Qt takes the numbers of the locale over for the whole process; files are written with points.
  std::setlocale(LC_NUMERIC, "C");

  const auto given = desktop::Arguments::parse(QCoreApplication::arguments());
  if (given.ending) return endWith(*given.ending);
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  QGuiApplication::setFont(desktop::fontWithEmoji(QGuiApplication::font()));

  desktop::Application program(given);
  if (!program.start()) {
    std::fputs("chatsum-desktop: the window could not be made; see the lines above.\n", stderr);
    return EXIT_FAILURE;
  }
  return QGuiApplication::exec();
}
