// Why an attachment has no digest. No state, any thread.
#pragma once

#include <sys/stat.h>

#include <string>

#include "hosts/device/evidence/EvidenceManifest.h"

namespace chatsum::device {

/// By what stands at `path` now, links followed.
[[nodiscard]] inline UnreadAttachment::Why whyUnread(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode)) return UnreadAttachment::Why::kUnreadable;
  return S_ISDIR(status.st_mode) ? UnreadAttachment::Why::kFolder : UnreadAttachment::Why::kSpecial;
}

}  // namespace chatsum::device
