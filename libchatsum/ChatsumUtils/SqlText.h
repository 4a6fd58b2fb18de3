// Text placed into SQL statements.
#pragma once

#include <string>
#include <string_view>

namespace chatsum {

/// The text with every single quote doubled, fit to stand between single quotes in a statement.
[[nodiscard]] inline std::string sqlQuoted(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    if (c == '\'') result += '\'';
    result += c;
  }
  return result;
}

}  // namespace chatsum
