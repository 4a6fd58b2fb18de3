// Files under hidden names until they are whole. A process that is killed leaves them behind; they go at the next
// start, when nobody writes into their folder any more. Real paths, any thread.
#pragma once

#include <string>

#include "platform/system/files/Descriptor.h"

namespace chatsum::platform::system {

/// A name that nobody can guess and prepare; it does not hold the file's own name, which may be as long as names can
/// be. Empty, and errno says why, when this machine has no random numbers.
[[nodiscard]] std::string unfinishedName();

/// While one lives, in any process, the unfinished files of its folder stay. Waits while somebody removes others. A
/// folder that is missing or cannot be locked is not locked: on such a file system nothing can be removed either.
class FolderInUse {
 public:
  explicit FolderInUse(const std::string& folder);

 private:
  Descriptor folder_;
};

/// Removes the files of this user in a folder that have names as above, with or without an extension, unless somebody
/// still writes there.
void removeUnfinished(const std::string& folder);

}  // namespace chatsum::platform::system
