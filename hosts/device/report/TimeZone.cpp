#include "hosts/device/report/TimeZone.h"

#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <system_error>

#include "platform/system/dates/DateEnvironment.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

/// The C library takes a name that it has no file for as UTC, without a word.
bool isKnownToC(const std::string& name) {
  if (name == "UTC") return true;
  if (name.empty() || name.starts_with('/') || name.find("..") != std::string::npos) return false;
  const char* folder = std::getenv("TZDIR");
  std::error_code error;
  return fs::is_regular_file(fs::path(folder && *folder ? folder : "/usr/share/zoneinfo") / name, error);
}

bool isKnownToIcu(const std::string& name) {
  const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
  return zone && *zone != icu::TimeZone::getUnknown();
}

}  // namespace

bool setTimeZone(const std::string& name) {
  if (!isKnownToC(name) || !isKnownToIcu(name)) return false;
  ::setenv("TZ", name.c_str(), 1);
  ::tzset();
  return true;
}

std::string timeZoneName() {
  icu::UnicodeString id;
  platform::system::zoneFromEnvironment()->getID(id);
  std::string name;
  id.toUTF8String(name);
  return name == "GMT" || name == "Etc/GMT" ? "UTC" : name;
}

}  // namespace chatsum::device
