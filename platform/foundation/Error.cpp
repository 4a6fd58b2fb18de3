#include "platform/foundation/Error.h"

#include <system_error>

#include "platform/foundation/Description.h"

namespace chatsum {

std::string Error::localizedDescription() const {
  if (const Value* text = userInfo.find(kLocalizedDescriptionKey)) return text->description();
  return "The operation couldn’t be completed. (" + domain.value_or("(null)") + " error " + std::to_string(code) + ".)";
}

std::string Error::description() const {
  return "Error Domain=" + domain.value_or("(null)") + " Code=" + std::to_string(code) + " \"" + localizedDescription() + "\"";
}

Error Error::posix(int number, const std::string& what) {
  // generic_category() never touches the C locale's own buffer, so any thread may ask.
  return {.domain = "NSPOSIXErrorDomain",
          .code = number,
          .userInfo = Record{{kLocalizedDescriptionKey, what + ": " + std::generic_category().message(number)}}};
}

}  // namespace chatsum
