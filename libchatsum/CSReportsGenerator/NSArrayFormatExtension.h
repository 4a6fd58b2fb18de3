// Strings made from a format and an array.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "libchatsum/Export.h"
#include "platform/foundation/TextBuffer.h"
#include "platform/foundation/Value.h"

namespace chatsum {

/// A format split once at its "%@" placeholders and used for many lines. "%%" prints "%"; any other "%" is printed as
/// it stands.
class LineFormat {
 public:
  explicit LineFormat(std::string_view format);

  [[nodiscard]] std::size_t placeholders() const { return literals_.size() - 1; }

  /// Appends the format to the text; `append(i)` appends what stands at the i-th placeholder.
  template <class AppendValue>
  void fill(TextBuffer& text, AppendValue append) const {
    text.append(literals_[0]);
    for (std::size_t i = 1; i < literals_.size(); ++i) {
      append(i - 1);
      text.append(literals_[i]);
    }
  }

 private:
  std::vector<std::string> literals_;  // what stands before, between and behind the placeholders
};

namespace NSArrayFormatExtension {

/// The format with its i-th "%@" replaced by the text of the i-th element (a string by itself, another value by its
/// description). Elements beyond the placeholders are ignored, placeholders beyond the elements are empty.
[[nodiscard]] CHATSUM_EXPORT std::string stringWithFormat(std::string_view format, const Array& array);

}  // namespace NSArrayFormatExtension

}  // namespace chatsum
