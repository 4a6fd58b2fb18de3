// The host application's bundle: who runs the library, and the words it shows.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::platform {

class MainBundle {
 public:
  virtual ~MainBundle() = default;
  /// Such as "com.apple.MobileSMS". Any thread.
  [[nodiscard]] virtual std::string identifier() const = 0;
  /// The text under an English key in the default string table; the key itself when there is none. UTF-8, any thread.
  [[nodiscard]] virtual std::string localizedString(std::string_view key) const = 0;
};

}  // namespace chatsum::platform
