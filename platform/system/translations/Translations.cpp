#include "platform/system/translations/Translations.h"

#include "platform/system/files/ReadFile.h"

namespace chatsum::platform::system {

std::string Translations::text(std::string_view english) const {
  std::call_once(once_, [this] { read(); });
  for (const MessageCatalogue& catalogue : catalogues_) {
    if (const auto found = catalogue.find(english)) return std::string(*found);
  }
  return std::string(english);
}

void Translations::read() const {
  if (folder_.empty()) return;
  for (const std::string& language : languages_) {
    auto bytes = readFile(folder_ + "/" + language + "/LC_MESSAGES/chatsum.mo", MessageCatalogue::kMostBytes);
    if (!bytes) continue;
    if (auto catalogue = MessageCatalogue::parse(std::move(*bytes))) catalogues_.push_back(std::move(*catalogue));
  }
}

}  // namespace chatsum::platform::system
