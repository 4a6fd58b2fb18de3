#include "hosts/device/report/Interruption.h"

#include <pthread.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <system_error>
#include <thread>

#include "hosts/device/report/PartialFile.h"
#include "hosts/device/stores/SnapshotFolder.h"

namespace chatsum::device {
namespace {

constexpr int kSignalBase = 128;
constexpr std::chrono::seconds kPatience{5};  // for a file that is just being written

[[noreturn]] void endWith(int signal) {
  PartialFile::removeAll(kPatience);
  SnapshotFolder::removeAll();
  ::_exit(kSignalBase + signal);
}

}  // namespace

void handleInterruptions(void (*first)()) {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is an error of the write
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction current {};
    // What the caller chose to ignore (nohup, a job in the background) stays ignored.
    if (::sigaction(signal, nullptr, &current) == 0 && current.sa_handler != SIG_IGN) sigaddset(&signals, signal);
  }
  // Threads that begin later inherit the mask, so only the one below gets these signals.
  ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  try {
    std::thread([signals, first] {
      int signal = 0;
      if (::sigwait(&signals, &signal) != 0) return;
      if (first) first();
      endWith(signal);
    }).detach();
  } catch (const std::system_error&) {
    // Without a thread signals end the program at once; what it leaves behind goes at the next start.
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  }
}

}  // namespace chatsum::device
