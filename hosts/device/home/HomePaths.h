// Which of the library's paths belong to the host itself: its home, and the settings in it. No state, any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "hosts/device/home/Containers.h"

namespace chatsum::device {

/// The file of the user's settings.
[[nodiscard]] std::string settingsFileIn(const std::string& home);

/// Whether a path is that of the folder or of something in it. One that rises with ".." is not; links are not followed.
[[nodiscard]] bool isBelow(std::string_view folder, std::string_view path);

/// The folder of the reports.
[[nodiscard]] std::string reportsFolderIn(const std::string& home);

/// The real path of something in the home or in a container, or of the settings, whose path is relative; none for
/// everything else.
[[nodiscard]] std::optional<std::string> pathInHome(const std::string& home, const Containers& containers,
                                                    const std::string& path);

}  // namespace chatsum::device
