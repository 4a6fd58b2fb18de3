// Copying files and folders, and moving them without overwriting. Real paths, any thread.
#pragma once

#include <string>

namespace chatsum::platform::system {

/// Copies a file, a symbolic link (as a link) or a folder with all it holds, modification times and the owner's
/// permissions kept: others get none. An existing destination is EEXIST; after a failure nothing stands at the
/// destination. Answers 0 or errno.
[[nodiscard]] int copyItem(const std::string& from, const std::string& to);

/// Renames one item; across file systems it is copied and then removed. An existing destination is EEXIST and stays as
/// it is. Answers 0 or errno.
[[nodiscard]] int moveItem(const std::string& from, const std::string& to);

/// Removes a file, a link (never what it points to), or a folder with all it holds. Answers 0 or errno.
[[nodiscard]] int removeItem(const std::string& path);

}  // namespace chatsum::platform::system
