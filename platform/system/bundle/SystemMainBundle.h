// The host application the library runs as. Any thread.
#pragma once

#include <string>
#include <utility>

#include "platform/interfaces/MainBundle.h"

namespace chatsum::platform::system {

/// There are no catalogues of translations yet: every key is its own text.
class SystemMainBundle final : public MainBundle {
 public:
  explicit SystemMainBundle(std::string identifier) : identifier_(std::move(identifier)) {}
  [[nodiscard]] std::string identifier() const override { return identifier_; }
  [[nodiscard]] std::string localizedString(std::string_view key) const override { return std::string(key); }

 private:
  std::string identifier_;
};

}  // namespace chatsum::platform::system
