// One language's texts from the bytes of a GNU MO file (GNU gettext manual, "The Format of GNU MO Files"). Immutable,
// any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/system/translations/PluralRule.h"

namespace chatsum::platform::system {

class MessageCatalogue {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{4} << 20;

  /// None when the bytes are no MO file of either byte order, are longer than kMostBytes, point outside themselves, or
  /// hold a text twice. Entries whose translation is no UTF-8 are left out.
  [[nodiscard]] static std::optional<MessageCatalogue> parse(std::string bytes);

  /// The translation of an English text; none when there is none. Of a text with plural forms, which is found by its
  /// singular, the first form. A text that means different things stands behind its context and the character 4. Valid
  /// as long as the catalogue.
  [[nodiscard]] std::optional<std::string_view> find(std::string_view text) const;
  /// The same in the form for a number of things; the last form where the catalogue has too few.
  [[nodiscard]] std::optional<std::string_view> find(std::string_view text, std::uint64_t number) const;

 private:
  MessageCatalogue() = default;

  std::unique_ptr<const std::string> bytes_;                      // behind a pointer, because the views point into it
  std::unordered_map<std::string_view, std::string_view> texts_;  // with all plural forms, zero bytes between them
  PluralRule plurals_;
};

}  // namespace chatsum::platform::system
