// Which of the plural forms of a text belongs to a number, by the rule in a catalogue's header (GNU gettext manual,
// "Additional functions for plural forms"). Immutable, any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace chatsum::platform::system {

class PluralRule {
 public:
  /// The rule of English: one form for 1, another for all else.
  PluralRule() = default;
  /// From the header, the translation of the empty text, such as "…\nPlural-Forms: nplurals=2; plural=n > 1;\n". That
  /// of English when it has none, or one that is no expression of C, longer or deeper than any language needs.
  explicit PluralRule(std::string_view header);

  /// The place of the form, from 0. A division by zero makes it 0.
  [[nodiscard]] std::size_t formFor(std::uint64_t number) const;

 private:
  std::string expression_ = "n != 1";
};

}  // namespace chatsum::platform::system
