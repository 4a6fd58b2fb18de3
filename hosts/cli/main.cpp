// The program chatsum.
#include <poll.h>
#include <unistd.h>

#include <iostream>

#include "hosts/cli/Cli.h"
#include "hosts/cli/PasswordInput.h"
#include "hosts/device/report/Interruption.h"

namespace {

bool isReaderOfResultsGone() {
  pollfd results{STDOUT_FILENO, 0, 0};
  return ::poll(&results, 1, 0) == 1 && (results.revents & POLLERR) != 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  chatsum::device::handleInterruptions(chatsum::cli::restoreTerminal);
  std::ios::sync_with_stdio(false);
  const bool errIsTerminal = ::isatty(STDERR_FILENO) != 0;
  const bool canAsk = errIsTerminal && ::isatty(STDIN_FILENO) != 0;
  return chatsum::cli::run(argumentCount, arguments,
                           chatsum::cli::Streams{.out = std::cout,
                                                 .err = std::cerr,
                                                 .errIsTerminal = errIsTerminal,
                                                 .isReaderGone = isReaderOfResultsGone,
                                                 .outIsTerminal = ::isatty(STDOUT_FILENO) != 0,
                                                 .in = canAsk ? &std::cin : nullptr,
                                                 .terminal = canAsk ? STDIN_FILENO : -1});
}
