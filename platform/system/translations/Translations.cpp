#include "platform/system/translations/Translations.h"

#include <algorithm>

#include "platform/system/files/ReadFile.h"

namespace chatsum::platform::system {

std::string Translations::text(std::string_view english) const { return find(english).value_or(std::string(english)); }

std::optional<std::string> Translations::find(std::string_view english, std::string_view context,
                                              std::optional<std::uint64_t> number) const {
  std::call_once(once_, [this] { read(); });
  std::string inContext;
  if (!context.empty()) {
    inContext.append(context).append("\4").append(english);
    english = inContext;
  }
  for (const MessageCatalogue& catalogue : catalogues_) {
    const auto found = number ? catalogue.find(english, *number) : catalogue.find(english);
    if (found) return std::string(*found);
  }
  return std::nullopt;
}

std::string Translations::language() const {
  std::call_once(once_, [this] { read(); });
  // "sr@latin" and its like say more than a document can.
  std::string language = language_.substr(0, language_.find('@'));
  std::replace(language.begin(), language.end(), '_', '-');
  return language;
}

void Translations::read() const {
  if (folder_.empty()) return;
  for (const std::string& language : languages_) {
    auto bytes =
        readFile(folder_ + "/" + language + "/LC_MESSAGES/" + catalogue_ + ".mo", MessageCatalogue::kMostBytes);
    if (!bytes) continue;
    auto catalogue = MessageCatalogue::parse(std::move(*bytes));
    if (!catalogue) continue;
    if (catalogues_.empty()) language_ = language;
    catalogues_.push_back(std::move(*catalogue));
  }
}

}  // namespace chatsum::platform::system
