// What kind of file a name promises.

#include <algorithm>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {

bool ChatsumUtils::isImageFile(std::string_view name) {
  const std::string_view extension = path::extensionView(name);
  if (extension.empty()) return false;
  auto& system = platform::current();
  const std::string type = system.uniformTypes.identifierForExtension(extension);
  const auto& imageTypes = system.messages.imageMediaTypes();
  return std::any_of(imageTypes.begin(), imageTypes.end(),
                     [&](const std::string& imageType) { return system.uniformTypes.conforms(type, imageType); });
}

bool ChatsumUtils::isPDFFile(std::string_view name) {
  const auto& types = platform::current().uniformTypes;
  return types.conforms(types.identifierForExtension(path::extensionView(name)), platform::kUTTypePDF);
}

}  // namespace chatsum
