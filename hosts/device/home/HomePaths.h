// Which of the library's paths belong to the host itself: its home, and the settings in it. No state, any thread.
#pragma once

#include <optional>
#include <string>

namespace chatsum::device {

/// The file of the user's settings.
[[nodiscard]] std::string settingsFileIn(const std::string& home);

/// The real path of something in the home, or of the settings, whose path is relative; none for everything else.
[[nodiscard]] std::optional<std::string> pathInHome(const std::string& home, const std::string& path);

}  // namespace chatsum::device
