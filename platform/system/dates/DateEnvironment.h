// The user's locale and time zone, from the environment of the process. Any thread, while no thread changes the
// environment.
#pragma once

#include <unicode/locid.h>
#include <unicode/timezone.h>

#include <memory>
#include <string>

namespace chatsum::platform::system {

/// A locale as the environment writes it ("de_DE.UTF-8", "sr_RS@latin"); "C" and "POSIX" are American English, the
/// language everything else is written in.
[[nodiscard]] icu::Locale localeNamed(std::string name);

/// The first of LC_ALL, LC_TIME and LANG that says something.
[[nodiscard]] icu::Locale localeFromEnvironment();

/// A zone as TZ writes it: a name ("Europe/Berlin"), the path of a zone file, or a rule of POSIX. What is none of these
/// is UTC. Never null.
[[nodiscard]] std::unique_ptr<icu::TimeZone> zoneNamed(std::string name);

/// TZ, else what the machine is set to, else UTC. Never null.
[[nodiscard]] std::unique_ptr<icu::TimeZone> zoneFromEnvironment();

}  // namespace chatsum::platform::system
