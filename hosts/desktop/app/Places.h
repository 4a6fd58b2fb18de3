// Where the program keeps what is its own. No state, any thread.
#pragma once

#include <QString>

#include "hosts/device/home/Containers.h"

namespace chatsum::desktop {

struct Places {
  QString home;                   ///< absolute, no "/" at the end; the settings stand below it
  device::Containers containers;  ///< below which the reports of each application stand
  QString sample;                 ///< of the sample device
  QString windowState;            ///< the file of what the window remembers
};

/// `home` as it was given, empty for the usual one, which the command line has too. With a home of its own, everything
/// is below it.
[[nodiscard]] Places placesFor(const QString& home);

}  // namespace chatsum::desktop
