// Sentences about decrypted copies that could not be made. No state, any thread.
#pragma once

#include <string>
#include <string_view>

#include "hosts/device/backup/FileDecryption.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// What every SQLite database starts with.
inline constexpr std::string_view kDatabaseStart("SQLite format 3\0", 16);

/// Why `shownPath` could not be decrypted into `folder`, after an errno.
[[nodiscard]] StoreProblem copyProblem(const std::string& shownPath, const std::string& folder, int error);

}  // namespace chatsum::device
