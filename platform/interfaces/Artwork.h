// Pictures, colours made of them, and the pages of PDF documents.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Geometry.h"

namespace chatsum::platform {

class UIImage;
using UIImageRef = std::shared_ptr<const UIImage>;

/// A picture. What its file holds beyond the size may be decoded later, when it is drawn. Immutable, any thread.
class UIImage {
 public:
  virtual ~UIImage() = default;
  [[nodiscard]] virtual Size size() const = 0;  ///< points
  /// What the rectangle cuts out of the picture's bitmap, as a picture of its own at scale 1. The rectangle counts
  /// pixels and is clipped to the bitmap; nullptr when nothing is left.
  [[nodiscard]] virtual UIImageRef croppedTo(const Rect& pixels) const = 0;
};

/// One page of a PDF document. Immutable, any thread.
class PDFPage {
 public:
  virtual ~PDFPage() = default;
  /// The box the page is shown in, in the document's coordinates (points, y growing upwards).
  [[nodiscard]] virtual Rect cropBox() const = 0;
};
using PDFPageRef = std::shared_ptr<const PDFPage>;

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
  /// The picture in a file; nullptr when the file cannot be read or is no picture.
  [[nodiscard]] virtual UIImageRef imageWithContentsOfFile(const std::string& path) const = 0;
  /// A page of a PDF document, the first is 1; nullptr when the file cannot be read or has no such page.
  [[nodiscard]] virtual PDFPageRef pageOfDocument(const std::string& path, int number) const = 0;
};

}  // namespace chatsum::platform
