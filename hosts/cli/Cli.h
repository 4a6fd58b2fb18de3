// The program chatsum, apart from what its process needs (signals, streams). One run at a time in a process.
#pragma once

#include <ostream>

#include "hosts/cli/Console.h"

namespace chatsum::cli {

/// Runs one command line and answers the exit code: 0 done, 1 failed, 2 wrong usage. Never throws.
[[nodiscard]] int run(int argumentCount, const char* const* arguments, const Streams& streams);

/// The same without a terminal.
[[nodiscard]] int run(int argumentCount, const char* const* arguments, std::ostream& out, std::ostream& err);

}  // namespace chatsum::cli
