#include "platform/system/propertylists/SystemPropertyLists.h"

#include "platform/system/files/SystemFiles.h"
#include "platform/system/propertylists/PropertyListFile.h"
#include "platform/system/propertylists/PropertyListGuard.h"

namespace chatsum::platform::system {

std::optional<Record> SystemPropertyLists::dictionary(const std::string& path) const {
  const auto bytes = files_.read(path, propertylist::kMostBytes);
  if (!bytes) return std::nullopt;
  const auto file = PropertyListFile::parse(*bytes);
  if (!file) return std::nullopt;
  return file->dictionary();
}

}  // namespace chatsum::platform::system
