#include "hosts/desktop/app/Arguments.h"

#include <QCommandLineParser>

namespace chatsum::desktop {

Arguments Arguments::parse(const QStringList& line) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Shows the messages and calls of a device, and makes reports of them."));
  parser.addPositionalArgument(QStringLiteral("SOURCE"), QStringLiteral("A backup, a device's folder, or a store"),
                               QStringLiteral("[SOURCE]"));
  const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("Keep reports and settings below <DIR>"),
                                QStringLiteral("DIR"));
  const QCommandLineOption sample(QStringLiteral("sample"), QStringLiteral("Open the sample device"));
  const QCommandLineOption light(QStringLiteral("light"), QStringLiteral("Light colours"));
  const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("Dark colours"));
  const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                      QStringLiteral("Write a picture of the window to <FILE> (PNG), and end"),
                                      QStringLiteral("FILE"));
  const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this"));
  const QCommandLineOption version(QStringLiteral("version"), QStringLiteral("Show the version"));
  parser.addOptions({home, sample, light, dark, screenshot, help, version});

  Arguments arguments;
  const auto refuse = [&arguments](const QString& why) {
    arguments.ending = Ending{why + QStringLiteral("\nSee chatsum-desktop --help.\n"), 2};
  };
  if (!parser.parse(line)) {
    refuse(parser.errorText());
    return arguments;
  }
  const QStringList sources = parser.positionalArguments();
  if (parser.isSet(help)) {
    arguments.ending = Ending{parser.helpText(), 0};
  } else if (parser.isSet(version)) {
    arguments.ending = Ending{QStringLiteral("chatsum-desktop " CHATSUM_VERSION "\n"), 0};
  } else if (sources.size() > 1) {
    refuse(QStringLiteral("One source can be opened at a time."));
  } else if (!sources.isEmpty() && parser.isSet(sample)) {
    refuse(QStringLiteral("--sample goes without a source."));
  } else if (parser.isSet(light) && parser.isSet(dark)) {
    refuse(QStringLiteral("--light and --dark exclude each other."));
  } else if (parser.isSet(home) && parser.value(home).isEmpty()) {
    refuse(QStringLiteral("--home needs a folder."));
  }
  if (!sources.isEmpty()) arguments.source = sources.first();
  arguments.home = parser.value(home);
  arguments.screenshot = parser.value(screenshot);
  arguments.usesSample = parser.isSet(sample);
  if (parser.isSet(light) || parser.isSet(dark)) arguments.isDark = parser.isSet(dark);
  return arguments;
}

}  // namespace chatsum::desktop
