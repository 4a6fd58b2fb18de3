// What a HEIF file says about turning and cropping its items (ISO/IEC 14496-12 boxes, ISO/IEC 23008-12 section 6.5).
// Any thread.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "platform/system/images/PictureBytes.h"

namespace chatsum::platform::system {

class HeifTransforms {
 public:
  /// Reads the file's boxes; what is damaged is as if it were not there.
  explicit HeifTransforms(PictureBytes& bytes);
  /// Whether two items are turned, mirrored and cropped by the same properties in the same order. A writer may turn a
  /// picture and forget the small one inside.
  [[nodiscard]] bool areEqual(std::uint32_t item, std::uint32_t other) const;

 private:
  std::map<std::uint32_t, std::string> ofItems_;
};

}  // namespace chatsum::platform::system
