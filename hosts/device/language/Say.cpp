#include "hosts/device/language/Say.h"

#include <fmt/format.h>

#include <optional>

#include "platform/system/bundle/SharedFolder.h"
#include "platform/system/translations/Languages.h"

namespace chatsum::device {
namespace {

using platform::system::Translations;

std::string filledOr(const std::optional<std::string>& translated, std::string_view english,
                     fmt::format_args arguments) {
  if (translated) {
    try {
      return fmt::vformat(*translated, arguments);
    } catch (const fmt::format_error&) {
      // A mistake of the catalogue; the English sentence was checked when it was compiled.
    }
  }
  return fmt::vformat(fmt::string_view(english.data(), english.size()), arguments);
}

}  // namespace

const Translations& translations() {
  static const Translations kTranslations(platform::system::sharedFolder() + "/locale",
                                          platform::system::languagesFromEnvironment());
  return kTranslations;
}

namespace language {

std::string filled(const Translations& translations, std::string_view english, fmt::format_args arguments) {
  return filledOr(translations.find(english), english, arguments);
}

std::string filledCounted(const Translations& translations, std::uint64_t count, std::string_view one,
                          std::string_view many, fmt::format_args arguments) {
  return filledOr(translations.find(one, {}, count), count == 1 ? one : many, arguments);
}

}  // namespace language

std::string said(std::string_view english) { return translations().text(english); }

}  // namespace chatsum::device
