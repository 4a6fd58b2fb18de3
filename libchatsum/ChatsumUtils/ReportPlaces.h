// Names of the folders that hold reports. Constants only.
#pragma once

#include <array>

namespace chatsum {

/// Below a home directory or the container of an application's data.
inline constexpr const char* kReportsPath = "/Library/Preferences/Chatsum";

/// The applications by App type.
inline constexpr std::array<const char*, 3> kAppFolderNames = {"Messages", "Phone", "FaceTime"};

}  // namespace chatsum
