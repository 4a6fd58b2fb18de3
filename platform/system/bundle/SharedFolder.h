// Where the files stand that came with the program. Any thread.
#pragma once

#include <string>

namespace chatsum::platform::system {

/// The folder "share" beside the running program's own ("bin"), in the tree it was installed to as in the one it was
/// built in. Empty when it is not known which program runs. Nothing is looked up in it.
[[nodiscard]] std::string sharedFolder();

}  // namespace chatsum::platform::system
