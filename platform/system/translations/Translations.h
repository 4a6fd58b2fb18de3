// The texts of the interface in the user's language. Catalogues are read at the first question. Any thread.
#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system/translations/MessageCatalogue.h"

namespace chatsum::platform::system {

class Translations {
 public:
  /// Catalogues stand in the folder as "de/LC_MESSAGES/chatsum.mo" (a real path). Languages as Languages.h gives them;
  /// those without a readable catalogue are passed over.
  Translations(std::string folder, std::vector<std::string> languages)
      : folder_(std::move(folder)), languages_(std::move(languages)) {}

  /// The English text in the first of the languages that has it, else itself. UTF-8.
  [[nodiscard]] std::string text(std::string_view english) const;

 private:
  void read() const;

  std::string folder_;
  std::vector<std::string> languages_;
  mutable std::once_flag once_;
  mutable std::vector<MessageCatalogue> catalogues_;
};

}  // namespace chatsum::platform::system
