// The program chatsum.
#include <poll.h>
#include <unistd.h>

#include <iostream>

#include "hosts/cli/Cli.h"
#include "hosts/cli/Interruption.h"

namespace {

bool isReaderOfResultsGone() {
  pollfd results{STDOUT_FILENO, 0, 0};
  return ::poll(&results, 1, 0) == 1 && (results.revents & POLLERR) != 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  chatsum::cli::handleInterruptions();
  std::ios::sync_with_stdio(false);
  return chatsum::cli::run(
      argumentCount, arguments,
      chatsum::cli::Console{std::cout, std::cerr, ::isatty(STDERR_FILENO) != 0, isReaderOfResultsGone});
}
