// Runs programs that tests look at results with. No state, any thread.
#pragma once

#include <string>
#include <vector>

namespace chatsum::test {

struct ToolRun {
  int code = -1;  ///< exit code; 127 when the program is not there, 128 + the number of the signal that ended it
  std::string out, err;
};

/// Runs a program of the PATH with its arguments (the first is its name) and waits for it.
[[nodiscard]] ToolRun runTool(const std::vector<std::string>& command);

}  // namespace chatsum::test
