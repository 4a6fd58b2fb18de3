// The program chatsum-desktop.
#include <unistd.h>

#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QQuickStyle>
#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <vector>

#include "hosts/desktop/app/Application.h"
#include "hosts/desktop/app/Arguments.h"
#include "hosts/desktop/app/Fonts.h"
#include "hosts/device/report/Interruption.h"
#include "platform/system/bundle/SharedFolder.h"

namespace {

bool isAboutTheProgram(std::string_view word) { return word == "--help" || word == "-h" || word == "--version"; }

int endWith(const chatsum::desktop::Arguments::Ending& ending) {
  std::fputs(qPrintable(ending.text), ending.code == 0 ? stdout : stderr);
  return ending.code;
}

/// While the display is opened. Qt tells of its tries in warnings and aborts when none is left; here that is a sentence
/// with the first reason, and what was tried before something worked is not worth a word.
void hearOfTheDisplay(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  static QString reason;
  if (type == QtFatalMsg) {
    std::fprintf(stderr, "chatsum-desktop: there is no display to show the window on (%s).\n",
                 qPrintable(reason.isEmpty() ? text.simplified() : reason));
    ::_exit(EXIT_FAILURE);
  }
  const std::string_view category(context.category ? context.category : "");
  if (type == QtDebugMsg || !category.starts_with("qt.qpa.")) {
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
  } else if (reason.isEmpty()) {
    reason = text.trimmed();
  }
}

/// The logo, in the sizes that window managers choose from.
QIcon logo() {
  QIcon icon;
  for (const char* scale : {"", "@2x", "@3x"}) {
    QPixmap picture(QString::fromStdString(chatsum::platform::system::sharedFolder()) +
                    QStringLiteral("/chatsum/ChatsumSettings.bundle/Chatsum%1.png").arg(QLatin1String(scale)));
    picture.setDevicePixelRatio(1);
    icon.addPixmap(picture);
  }
  return icon;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  using namespace chatsum;
  device::handleInterruptions();
  QCoreApplication::setApplicationName(QStringLiteral("Chatsum"));
  QGuiApplication::setDesktopFileName(QStringLiteral("chatsum-desktop"));
  const std::vector<std::string_view> words(arguments + 1, arguments + argumentCount);
  if (std::any_of(words.begin(), words.end(), isAboutTheProgram)) {
    const QCoreApplication withoutDisplay(argumentCount, arguments);
    return endWith(
        desktop::Arguments::parse(QCoreApplication::arguments()).ending.value_or(desktop::Arguments::Ending()));
  }
  const QtMessageHandler before = qInstallMessageHandler(hearOfTheDisplay);
  QGuiApplication application(argumentCount, arguments);
  qInstallMessageHandler(before);
  // Qt takes the numbers of the locale over for the whole process; files are written with points.
  std::setlocale(LC_NUMERIC, "C");

  const auto given = desktop::Arguments::parse(QCoreApplication::arguments());
  if (given.ending) return endWith(*given.ending);
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  QGuiApplication::setWindowIcon(logo());
  QGuiApplication::setFont(desktop::fontWithEmoji(QGuiApplication::font()));

  try {
    desktop::Application program(given);
    if (!program.start()) {
      std::fputs("chatsum-desktop: the window could not be made; see the lines above.\n", stderr);
      return EXIT_FAILURE;
    }
    return QGuiApplication::exec();
  } catch (const std::system_error&) {
    std::fputs("chatsum-desktop: no thread can be started; close other programs and try again.\n", stderr);
    return EXIT_FAILURE;
  }
}
