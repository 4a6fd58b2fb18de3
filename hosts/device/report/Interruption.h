// Ends the process cleanly when it is told to stop (Ctrl-C, a closed terminal): private copies of stores and
// half-written files go first. For main only, before any other thread begins.
#pragma once

namespace chatsum::device {

/// From here on SIGINT, SIGTERM and SIGHUP are waited for on a thread of their own, and the process then ends with 128
/// + the signal's number, after `first`, where there is one, which that thread calls. A pipe that nobody reads is an
/// error of the stream and no signal.
void handleInterruptions(void (*first)() = nullptr);

}  // namespace chatsum::device
