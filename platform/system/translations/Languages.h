// The languages a person reads, by the environment of the process. Any thread, while no thread changes the environment.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace chatsum::platform::system {

/// The names of catalogues to look for, the best first, most particular forms first: "de_AT", "de" for "de_AT.UTF-8".
/// `locale` is the locale of messages; "", C, POSIX and their kin mean no catalogue at all, whatever else is said.
/// `wanted` is a list such as "de:fr" that goes before the locale, as LANGUAGE does; may be empty. English, which texts
/// are written in, ends the list, as it needs no catalogue. Names that are none are left out.
[[nodiscard]] std::vector<std::string> languagesFor(std::string_view locale, std::string_view wanted);

/// The same from LC_ALL, LC_MESSAGES or LANG, the first that says something, and LANGUAGE.
[[nodiscard]] std::vector<std::string> languagesFromEnvironment();

}  // namespace chatsum::platform::system
