// Names of report files. No state, any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// The name with "." and the extension behind it, unless it ends so already (in any case): "Dr. Smith" becomes
/// "Dr. Smith.txt".
[[nodiscard]] std::string withExtension(std::string_view name, std::string_view extension);

/// What file systems take, in bytes.
inline constexpr std::size_t kMostNameBytes = 255;

/// What can be wrong with the name of a report. A hidden file would never be listed among the reports.
enum class NameFault : std::uint8_t { kEmpty, kSlash, kFolder, kZero, kHidden, kTooLong };

/// Why a name (UTF-8, without its extension) cannot be that of a report; none when it can.
[[nodiscard]] std::optional<NameFault> faultOfName(std::string_view name, std::string_view extension);

/// The same in words of the command line. `name` has its extension.
[[nodiscard]] std::optional<StoreProblem> checkReportName(std::string_view name, std::string_view extension);

/// A file name for a conversation: its name without what file names cannot hold, cut to a handy length. No extension.
[[nodiscard]] std::string reportNameFor(std::string_view conversationName);

}  // namespace chatsum::device
