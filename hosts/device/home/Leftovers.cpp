#include "hosts/device/home/Leftovers.h"

#include "platform/foundation/PathComponents.h"
#include "platform/system/files/UnfinishedFiles.h"

namespace chatsum::device {

void removeLeftovers(const std::string& home) {
  if (home.empty()) return;
  platform::system::removeUnfinished(path::appending(home, "Library/Preferences/Chatsum"));
}

}  // namespace chatsum::device
