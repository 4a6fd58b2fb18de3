// How the kinds of sources look at the files they stand for: where a store is, what stands beside it, and why a place
// cannot be read. No state, any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/source/DeviceSource.h"
#include "hosts/device/source/SourceFolder.h"
#include "hosts/device/stores/StoreFiles.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// Where to find the store of the first place (below `folder`, as "var/mobile/Library/SMS/sms.db") that holds one; none
/// when none does. The problem when a place may not be read, or holds a -wal without its store.
[[nodiscard]] StoreResult<std::optional<StoreLocation>> locateStore(const SourceFolder& folder,
                                                                    const std::vector<std::string>& places);

/// The file at `main` and those beside it that SQLite may have made, named by their paths below `folder`.
[[nodiscard]] std::vector<SourceFile> filesOfStore(const std::string& folder, const std::string& main);

/// What is not there of the store of the first place that holds one: the places before it, and what SQLite may put
/// beside it. Named by their paths below `folder`.
[[nodiscard]] std::vector<SourceFile> absentOfStore(const SourceFolder& folder, const std::vector<std::string>& places);

/// "a/b" for "/source/a/b" below "/source"; the path itself when it stands elsewhere.
[[nodiscard]] std::string nameBelow(std::string_view folder, std::string_view path);

/// The problem when a file or folder is there, or may be, but the system refuses to let it be read.
[[nodiscard]] std::optional<StoreProblem> checkReadable(const std::string& path);

/// What to say when reading `path` failed with `error`, an errno.
[[nodiscard]] StoreProblem describeUnreadable(const std::string& path, int error);

/// "a, b, c".
[[nodiscard]] std::string listed(const std::vector<std::string>& texts);

}  // namespace chatsum::device
