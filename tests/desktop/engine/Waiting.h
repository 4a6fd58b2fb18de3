// Waiting for what other threads do, as a window does it: by running the events that come.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <functional>

namespace chatsum::desktop::testing {

/// Runs events until the condition holds. The limit is for tests that fail; no test waits for it.
[[nodiscard]] inline bool happens(const std::function<bool()>& condition) {
  constexpr int kMostMilliseconds = 60'000, kStep = 5;
  QTimer steps;  // wakes the loop where no event comes
  steps.start(kStep);
  for (int waited = 0; waited < kMostMilliseconds; waited += kStep) {
    if (condition()) return true;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return condition();
}

/// Runs what is on its way to the main thread already.
inline void runEvents() {
  QCoreApplication::sendPostedEvents();
  QCoreApplication::processEvents();
}

}  // namespace chatsum::desktop::testing
