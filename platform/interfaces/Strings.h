// Text compared the way people do.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::platform {

class Strings {
 public:
  virtual ~Strings() = default;
  /// The text without case and diacritics (canonical decomposition, marks dropped, full case folding of the root
  /// locale), UTF-8. Two texts that differ only in these fold to the same bytes. Any thread.
  [[nodiscard]] virtual std::string folded(std::string_view text) const = 0;
  /// The text without case only (full case folding of the root locale), UTF-8. Any thread.
  [[nodiscard]] virtual std::string caseFolded(std::string_view text) const = 0;
};

}  // namespace chatsum::platform
