// Sentences about decrypted copies that could not be made. No state, any thread.
#pragma once

#include <string>

#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// Why `shownPath` could not be decrypted into `folder`, after an errno.
[[nodiscard]] StoreProblem copyProblem(const std::string& shownPath, const std::string& folder, int error);

}  // namespace chatsum::device
