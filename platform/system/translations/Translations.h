// The texts of the interface in the user's language. Catalogues are read at the first question. Any thread.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system/translations/MessageCatalogue.h"

namespace chatsum::platform::system {

class Translations {
 public:
  /// Catalogues stand in the folder as "de/LC_MESSAGES/chatsum.mo" (a real path); a part of the system with texts of
  /// its own has another name for them. Languages as Languages.h gives them; those without a readable catalogue are
  /// passed over.
  Translations(std::string folder, std::vector<std::string> languages, std::string catalogue = "chatsum")
      : folder_(std::move(folder)), languages_(std::move(languages)), catalogue_(std::move(catalogue)) {}

  /// The English text in the first of the languages that has it, else itself. UTF-8.
  [[nodiscard]] std::string text(std::string_view english) const;

  /// The same, but none when no language has it. A context tells texts of different meanings apart; with a number, the
  /// text is the singular and the answer the form that belongs to the number.
  [[nodiscard]] std::optional<std::string> find(std::string_view english, std::string_view context = {},
                                                std::optional<std::uint64_t> number = std::nullopt) const;

  /// The language whose texts come first, as documents name it ("de-AT"); "en" when no catalogue is there.
  [[nodiscard]] std::string language() const;

 private:
  void read() const;

  std::string folder_;
  std::vector<std::string> languages_;
  std::string catalogue_;
  mutable std::once_flag once_;
  mutable std::vector<MessageCatalogue> catalogues_;
  mutable std::string language_ = "en";
};

}  // namespace chatsum::platform::system
