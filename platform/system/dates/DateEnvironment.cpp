#include "platform/system/dates/DateEnvironment.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "platform/system/dates/PosixZone.h"

namespace chatsum::platform::system {
namespace {

namespace fs = std::filesystem;

/// "Europe/Berlin" of "/usr/share/zoneinfo/posix/Europe/Berlin".
std::string withoutZoneFolder(std::string name) {
  constexpr std::string_view kFolder = "/zoneinfo/";
  if (const auto at = name.find(kFolder); at != std::string::npos) name.erase(0, at + kFolder.size());
  for (const std::string_view part : {"posix/", "right/"}) {
    if (name.starts_with(part)) name.erase(0, part.size());
  }
  return name;
}

/// "GMT+3" is three hours west of Greenwich in TZ but east of it for ICU.
bool looksLikeOffset(std::string_view name) {
  return name.size() > 4 && name.starts_with("GMT") && (name[3] == '+' || name[3] == '-');
}

std::unique_ptr<icu::TimeZone> knownZone(const std::string& name) {
  if (name.empty() || looksLikeOffset(name)) return nullptr;
  std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
  if (!zone || *zone == icu::TimeZone::getUnknown()) return nullptr;
  return zone;
}

std::unique_ptr<icu::TimeZone> utc() { return std::unique_ptr<icu::TimeZone>(icu::TimeZone::getGMT()->clone()); }

}  // namespace

icu::Locale localeNamed(std::string name) {
  std::string modifier;
  if (const auto at = name.find('@'); at != std::string::npos) {
    modifier = name.substr(at + 1);
    name.erase(at);
  }
  if (const auto dot = name.find('.'); dot != std::string::npos) name.erase(dot);
  if (name.empty() || name == "C" || name == "POSIX") name = "en_US";
  // The C library names scripts by modifiers; ICU's keywords ("calendar=buddhist") pass, "euro" and the like say
  // nothing.
  for (const auto& [word, script] : {std::pair{"latin", "Latn"}, {"cyrillic", "Cyrl"}, {"devanagari", "Deva"}}) {
    if (modifier == word) name.insert(std::min(name.find('_'), name.size()), std::string("_") + script);
  }
  if (modifier.find('=') != std::string::npos) name += "@" + modifier;
  return icu::Locale::createCanonical(name.c_str());
}

icu::Locale localeFromEnvironment() {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    if (const char* value = std::getenv(variable); value && *value) return localeNamed(value);
  }
  return localeNamed("");
}

std::unique_ptr<icu::TimeZone> zoneNamed(std::string name) {
  if (name.starts_with(':')) name.erase(0, 1);
  if (auto zone = knownZone(withoutZoneFolder(name))) return zone;
  if (auto zone = zoneFromPosixRule(name)) return zone;
  return utc();
}

std::unique_ptr<icu::TimeZone> zoneFromEnvironment() {
  if (const char* value = std::getenv("TZ")) return zoneNamed(value);
  const fs::path setting = "/etc/localtime";
  std::error_code error;
  // The name as it was chosen, then the one it stands for: either list of zones may be older than the other.
  const auto chosen = fs::read_symlink(setting, error).string();
  if (auto zone = knownZone(withoutZoneFolder(chosen))) return zone;
  const auto meant = fs::canonical(setting, error).string();
  if (meant != setting) {
    if (auto zone = knownZone(withoutZoneFolder(meant))) return zone;
  }
  std::string name;
  if (std::ifstream("/etc/timezone") >> name) {
    if (auto zone = knownZone(name)) return zone;
  }
  // A copied zone file: ICU looks for its twin among all zones.
  std::unique_ptr<icu::TimeZone> found(icu::TimeZone::detectHostTimeZone());
  if (found && !(*found == icu::TimeZone::getUnknown())) return found;
  return utc();
}

}  // namespace chatsum::platform::system
