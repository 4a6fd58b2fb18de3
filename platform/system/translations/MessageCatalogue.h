// One language's texts from the bytes of a GNU MO file (GNU gettext manual, "The Format of GNU MO Files"). Immutable,
// any thread.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace chatsum::platform::system {

class MessageCatalogue {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{4} << 20;

  /// None when the bytes are no MO file of either byte order, are longer than kMostBytes, point outside themselves, or
  /// hold a text twice. Entries whose translation is no UTF-8 are left out.
  [[nodiscard]] static std::optional<MessageCatalogue> parse(std::string bytes);

  /// The translation of an English text; none when there is none. Valid as long as the catalogue.
  [[nodiscard]] std::optional<std::string_view> find(std::string_view text) const;

 private:
  MessageCatalogue() = default;

  std::unique_ptr<const std::string> bytes_;  // behind a pointer, because the views point into it
  std::unordered_map<std::string_view, std::string_view> texts_;
};

}  // namespace chatsum::platform::system
