// Pictures that ship with bundles, and colours made of them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Geometry.h"

namespace chatsum::platform {

/// A decoded picture. Immutable, any thread.
class UIImage {
 public:
  virtual ~UIImage() = default;
  [[nodiscard]] virtual Size size() const = 0;  ///< points
};
using UIImageRef = std::shared_ptr<const UIImage>;

/// A colour that tiles a picture; without a picture it draws nothing.
struct UIColor {
  UIImageRef pattern;
};

/// A folder of resources that belongs to a class. Immutable, any thread.
class Bundle {
 public:
  virtual ~Bundle() = default;
  /// The path of the file "name.type"; none when the bundle has no such file.
  [[nodiscard]] virtual std::optional<std::string> pathForResource(std::string_view name, std::string_view type) const = 0;
  /// The picture of a name in the bundle, scaled variants ("name@2x.png") included; nullptr when there is none.
  [[nodiscard]] virtual UIImageRef imageNamed(std::string_view name) const = 0;
};
using BundleRef = std::shared_ptr<const Bundle>;

class Artwork {
 public:
  virtual ~Artwork() = default;
  /// The bundle that holds a class; the main bundle for a class that is not known. Never null.
  [[nodiscard]] virtual BundleRef bundleForClass(std::string_view className) const = 0;
  /// The picture in a file; nullptr when it cannot be read or decoded.
  [[nodiscard]] virtual UIImageRef imageWithContentsOfFile(const std::string& path) const = 0;
};

}  // namespace chatsum::platform
