// Sentences for people, in the language of the environment. The English sentence stands in the code and is the key in
// the catalogues; tools/make-translations finds it there, so it is written out where it is said. Any thread; needs no
// platform. Catalogues are read at the first sentence.
#pragma once

#include <fmt/core.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/system/translations/Translations.h"

namespace chatsum::device {

/// What hosts say their sentences with; those of the library and of the platform that is installed by default are the
/// same.
[[nodiscard]] const platform::system::Translations& translations();

namespace language {

/// The translation with its places filled in; the English sentence where there is none, or where its places do not fit
/// the arguments.
[[nodiscard]] std::string filled(const platform::system::Translations& translations, std::string_view english,
                                 fmt::format_args arguments);
/// The same in the form for a number.
[[nodiscard]] std::string filledCounted(const platform::system::Translations& translations, std::uint64_t count,
                                        std::string_view one, std::string_view many, fmt::format_args arguments);

}  // namespace language

/// A sentence with arguments at the places {0}, {1} …, as those of fmt; braces themselves are written twice.
template <typename... Arguments>
[[nodiscard]] std::string say(fmt::format_string<const Arguments&...> english, const Arguments&... arguments) {
  const fmt::string_view text = english;
  return language::filled(translations(), {text.data(), text.size()}, fmt::make_format_args(arguments...));
}

/// A sentence that depends on a number: "{0} row" or "{0} rows". The number is {0}, what else there is {1}, {2} …
template <typename... Arguments>
[[nodiscard]] std::string sayCounted(std::uint64_t count,
                                     fmt::format_string<const std::uint64_t&, const Arguments&...> one,
                                     fmt::format_string<const std::uint64_t&, const Arguments&...> many,
                                     const Arguments&... arguments) {
  const fmt::string_view single = one, several = many;
  return language::filledCounted(translations(), count, {single.data(), single.size()},
                                 {several.data(), several.size()}, fmt::make_format_args(count, arguments...));
}

/// Marks words of a table that are said later.
[[nodiscard]] constexpr std::string_view toSay(std::string_view english) { return english; }
/// What toSay() marked, in the reader's language. Nothing is filled in.
[[nodiscard]] std::string said(std::string_view english);

}  // namespace chatsum::device
