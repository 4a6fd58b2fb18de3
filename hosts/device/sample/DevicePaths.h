// Where the generators put things below the root of a device. Pure functions but for the file system: any thread.
#pragma once

#include <filesystem>
#include <string>

namespace chatsum::device {

std::filesystem::path messageStorePath(const std::filesystem::path& root);
std::filesystem::path addressBookPath(const std::filesystem::path& root);
std::filesystem::path callListPath(const std::filesystem::path& root);
std::filesystem::path temporaryCallListPath(const std::filesystem::path& root);
/// Where systems before iOS 8 have it.
std::filesystem::path oldCallListPath(const std::filesystem::path& root);

/// Whether one of these stores stands there already.
bool holdsDevice(const std::filesystem::path& root);

/// The sentence that refuses to write there then.
std::string holdsDeviceSentence(const std::filesystem::path& root);

/// Makes `User`, a relative link to var/mobile, unless something of that name is there. A device is complete without
/// it, so a file system that has no links is no failure.
void linkUserFolder(const std::filesystem::path& root);

}  // namespace chatsum::device
