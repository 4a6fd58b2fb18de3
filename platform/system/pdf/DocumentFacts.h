// What a document says about itself (ISO 32000-1, 14.3.3 and 14.9.2).
#pragma once

#include <optional>
#include <string>

#include "platform/foundation/Date.h"

namespace chatsum::platform::system {

struct DocumentFacts {
  std::string title;            ///< UTF-8; empty: none
  std::string language;         ///< of its texts (BCP 47, such as "en" or "de-AT"); empty: none
  std::optional<Date> created;  ///< cut to whole seconds
};

}  // namespace chatsum::platform::system
