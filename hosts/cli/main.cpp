// The program chatsum.
#include <unistd.h>

#include <iostream>

#include "hosts/cli/Cli.h"
#include "hosts/cli/Interruption.h"

int main(int argumentCount, char** arguments) {
  chatsum::cli::handleInterruptions();
  std::ios::sync_with_stdio(false);
  return chatsum::cli::run(argumentCount, arguments,
                           chatsum::cli::Console{std::cout, std::cerr, ::isatty(STDERR_FILENO) != 0});
}
