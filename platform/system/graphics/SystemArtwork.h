// The place of the picture service, which this build does not have: bundles hold nothing and no file is a picture. Any
// thread.
#pragma once

#include "platform/interfaces/Artwork.h"

namespace chatsum::platform::system {

class SystemArtwork final : public Artwork {
 public:
  /// An empty bundle for every class.
  [[nodiscard]] BundleRef bundleForClass(std::string_view className) const override;
  /// Always nullptr; the file is not read.
  [[nodiscard]] UIImageRef imageWithContentsOfFile(const std::string& path) const override;
};

}  // namespace chatsum::platform::system
