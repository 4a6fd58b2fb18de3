// Finds out what kind of source stands at a path and opens it. No state, any thread.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "hosts/device/source/DeviceSource.h"
#include "hosts/device/source/SourceAccess.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// Opens the source at `path`: a backup's folder, a Mac's home, a folder that mirrors a device's "/", or a store
/// itself. The problem says what was looked for. No store is opened yet; of an encrypted backup the password is
/// checked.
[[nodiscard]] StoreResult<std::unique_ptr<DeviceSource>> openSource(const std::string& path,
                                                                    const SourceAccess& access);

/// What stands at the path, when it is a source; no store is opened and no password asked.
[[nodiscard]] std::optional<SourceFacts> sourceFactsAt(const std::string& path);

}  // namespace chatsum::device
