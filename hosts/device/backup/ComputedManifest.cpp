#include "hosts/device/backup/ComputedManifest.h"

namespace chatsum::device {

ManifestAnswer ComputedManifest::find(std::string_view domain, std::string_view relativePath) const {
  if (list_) {
    ManifestAnswer answer = list_->find(domain, relativePath);
    if (answer.isReadable) return answer;
  }
  BackupFile file;
  file.name = std::string(domain).append("-").append(relativePath);
  file.id = fileIdOf(domain, relativePath);
  if (!folder_.storedFile(file.id)) return {};
  return {.file = std::move(file)};
}

}  // namespace chatsum::device
