// Keeps what is written out of the source, which may be the only copy there is. No state, any thread.
#pragma once

#include <optional>
#include <string>

#include "hosts/device/source/SourceFacts.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// The problem when something at `place`, which need not be there yet, would stand inside the source, whatever links
/// lead there: below a device's folder or a backup, in the folders where a Mac keeps its stores (the rest of a home is
/// its owner's), and in place of a single store, of what belongs to it, or below the folders of attachments beside it.
[[nodiscard]] std::optional<StoreProblem> refuseInSource(const SourceFacts& source, const std::string& place);

/// The same for what reports and settings write below a home directory.
[[nodiscard]] std::optional<StoreProblem> refuseHomeInSource(const SourceFacts& source, const std::string& home);

}  // namespace chatsum::device
