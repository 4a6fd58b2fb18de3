// The rules of the source tree: which folder may include which, what the library may call, how long a file may be, and
// what no file mentions. Reads files only; one thread.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace chatsum::tests {

/// One sentence for every break of a rule below `root` ("path:line: what is wrong"), in the order of the paths; empty
/// when the tree keeps them all. Build folders are not looked at.
std::vector<std::string> brokenTreeRules(const std::filesystem::path& root);

}  // namespace chatsum::tests
