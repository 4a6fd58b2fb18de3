// The applications whose reports there are, and the folders of their data. Each has a home of its own, unless one home
// is given for all. No state, any thread.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace chatsum::device {

inline constexpr std::string_view kMessagesApplication = "com.apple.MobileSMS";
inline constexpr std::string_view kPhoneApplication = "com.apple.mobilephone";
inline constexpr std::string_view kFaceTimeApplication = "com.apple.facetime";
/// By App type code.
inline constexpr std::array<std::string_view, 3> kHostApplications = {kMessagesApplication, kPhoneApplication,
                                                                      kFaceTimeApplication};

/// Bundle identifier of a host application → the folder of its data; absolute, no trailing "/".
using Containers = std::map<std::string, std::string, std::less<>>;

/// Those of all applications, beside each other in a folder.
[[nodiscard]] inline Containers containersIn(const std::string& folder) {
  Containers containers;
  for (const std::string_view application : kHostApplications) {
    containers.emplace(application, folder + "/" + std::string(application));
  }
  return containers;
}

/// The home for reports of an application, by its App type code: its container, else that of Messages. Empty without
/// either.
[[nodiscard]] inline std::string homeOf(const Containers& containers, std::int64_t appType) {
  const auto index = static_cast<std::uint64_t>(appType);
  auto found = index < kHostApplications.size() ? containers.find(kHostApplications.at(index)) : containers.end();
  if (found == containers.end()) found = containers.find(kMessagesApplication);
  return found == containers.end() ? std::string() : found->second;
}

}  // namespace chatsum::device
