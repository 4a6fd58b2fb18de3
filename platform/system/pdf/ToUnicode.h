// Which text each code of a font stands for, so that readers can search and copy (ISO 32000-1, 9.10.3). One thread at a
// time.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace chatsum::platform::system {

class ToUnicode {
 public:
  /// The first text of a code is its meaning from then on, cut after some characters. True when that is all of `text`
  /// (UTF-8).
  bool means(std::uint16_t code, std::string_view text);
  /// Whether the code stands for that text by now.
  [[nodiscard]] bool alreadyMeans(std::uint16_t code, std::string_view text) const;

  /// The map as a CMap file, for codes of one byte or two.
  [[nodiscard]] std::string characterMap(int codeBytes) const;

 private:
  std::map<std::uint16_t, std::string> texts_;
};

}  // namespace chatsum::platform::system
