// Opens a single store that was given as the source. No state, any thread.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "hosts/device/source/DeviceSource.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// Opens the store at `path`, a file: where it stands as in a device or a Mac's home, all of that is the source, else
/// the file and what is beside it.
[[nodiscard]] StoreResult<std::unique_ptr<DeviceSource>> openStoreFile(const std::string& path);

/// The path of the store that stands in the folder itself: sms.db, chat.db, or a call list; none when none does.
[[nodiscard]] std::optional<std::string> storeFileIn(const std::string& folder);

}  // namespace chatsum::device
