// The time zone that reports are written in: the process's (TZ). Called before other threads begin.
#pragma once

#include <string>

namespace chatsum::device {

/// Makes a zone that is named as the IANA database names it ("Europe/Berlin", "UTC") the process's. False, and nothing
/// changed, when the system does not know it.
[[nodiscard]] bool setTimeZone(const std::string& name);

/// The IANA name of the process's zone, or its rule when it has no name.
[[nodiscard]] std::string timeZoneName();

}  // namespace chatsum::device
