// Names of report files. No state, any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// The name with "." and the extension behind it, unless it ends so already (in any case): "Dr. Smith" becomes
/// "Dr. Smith.txt".
[[nodiscard]] std::string withExtension(std::string_view name, std::string_view extension);

/// Why the name cannot be that of a file in the reports folder; none when it can. `name` has its extension.
[[nodiscard]] std::optional<StoreProblem> checkReportName(std::string_view name, std::string_view extension);

/// A file name for a conversation: its name without what file names cannot hold, cut to a handy length. No extension.
[[nodiscard]] std::string reportNameFor(std::string_view conversationName);

}  // namespace chatsum::device
