#include "libchatsum/CSReportsGenerator/NSArrayFormatExtension.h"

namespace chatsum {

LineFormat::LineFormat(std::string_view format) : literals_(1) {
  for (std::size_t i = 0; i < format.size(); ++i) {
    const char next = format[i] == '%' && i + 1 < format.size() ? format[i + 1] : '\0';
    if (next == '@') {
      literals_.emplace_back();
      ++i;
    } else {
      literals_.back() += format[i];
      if (next == '%') ++i;
    }
  }
}

std::string NSArrayFormatExtension::stringWithFormat(std::string_view format, const Array& array) {
  TextBuffer text;
  LineFormat(format).fill(text, [&](std::size_t i) {
    if (i >= array.size()) return;
    if (const String* string = array[i].asString()) {
      text.append(string->view());
    } else {
      text.append(array[i].description());
    }
  });
  return std::string(text.view());
}

}  // namespace chatsum
