// Text folded by ICU. Any thread.
#pragma once

#include "platform/interfaces/Strings.h"

namespace chatsum::platform::system {

class SystemStrings final : public Strings {
 public:
  /// Plain ASCII text never touches ICU. Bytes that are no UTF-8 count as U+FFFD.
  [[nodiscard]] std::string folded(std::string_view text) const override;
  /// As `folded`.
  [[nodiscard]] std::string caseFolded(std::string_view text) const override;
};

}  // namespace chatsum::platform::system
