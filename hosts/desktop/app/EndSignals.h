// What happens when the program is told to end from outside.
#pragma once

namespace chatsum::desktop {

/// From now on, at SIGINT, SIGTERM or SIGHUP, reports that are half written and copies of stores are removed before the
/// program ends. To be called before other threads begin.
void handleEndSignals();

}  // namespace chatsum::desktop
