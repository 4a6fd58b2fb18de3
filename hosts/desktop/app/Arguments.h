// What the program was called with. No state, any thread.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace chatsum::desktop {

struct Arguments {
  QString source;              ///< a path as it was given; empty: the window begins with what it finds
  QString home;                ///< as it was given; empty: the usual one
  QString screenshot;          ///< where to write a picture of the window; then the program ends
  bool usesSample = false;     ///< the sample device instead of a source
  std::optional<bool> isDark;  ///< the colours of this run, whatever is set

  /// What to print before the program ends, and how it ends; none when it goes on.
  struct Ending {
    QString text;
    int code = 0;  ///< 0: was asked for, 2: wrong usage
  };
  std::optional<Ending> ending;

  /// Reads a command line, the program's name first.
  [[nodiscard]] static Arguments parse(const QStringList& line);
};

}  // namespace chatsum::desktop
