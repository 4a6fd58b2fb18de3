// The host application the library runs as. Any thread.
#pragma once

#include <string>
#include <utility>

#include "platform/interfaces/MainBundle.h"
#include "platform/system/translations/Translations.h"

namespace chatsum::platform::system {

class SystemMainBundle final : public MainBundle {
 public:
  /// The translations must outlive it.
  SystemMainBundle(std::string identifier, const Translations& translations)
      : identifier_(std::move(identifier)), translations_(translations) {}
  [[nodiscard]] std::string identifier() const override { return identifier_; }
  [[nodiscard]] std::string localizedString(std::string_view key) const override { return translations_.text(key); }

 private:
  std::string identifier_;
  const Translations& translations_;
};

}  // namespace chatsum::platform::system
