// An offscreen surface: transparent pixels that pictures and pages of documents are drawn on. One thread at a time.
#pragma once

#include "platform/foundation/Geometry.h"
#include "platform/interfaces/Artwork.h"
#include "platform/system/images/Bitmap.h"
#include "platform/system/images/PixelGeometry.h"
#include "platform/system/images/PixelSource.h"

namespace chatsum::platform::system {

class ImageSurface {
 public:
  /// `size` is in points, `scale` pixels to a point. A very large surface holds fewer pixels inside, and its picture
  /// has the size and counts the pixels all the same. One that is empty or has no sensible size draws nothing.
  ImageSurface(Size size, double scale);

  /// Move and scale the coordinates of what is drawn from here on; y grows downwards before that.
  void translate(double x, double y);
  void scale(double x, double y);

  /// Stretches the picture into the rectangle: averaged down, or smoothly enlarged. Nothing for nullptr and for what
  /// cannot be decoded.
  void drawImage(const UIImageRef& image, const Rect& rect);
  /// Draws what the page's crop box shows, on a white sheet: a page is drawn for paper.
  void drawPDFPage(const PDFPage& page);
  /// How many pixels a drawing into the rectangle asks for.
  [[nodiscard]] PixelSize pixelsIn(const Rect& rect) const;

  /// What is drawn so far, and how whole it is; nullptr for an empty surface.
  [[nodiscard]] UIImageRef image() const;

 private:
  struct Axis {
    double factor = 1, offset = 0;  // coordinates to pixels held
    [[nodiscard]] double at(double value) const { return factor * value + offset; }
  };
  /// From where to where on the surface, in pixels held; backwards when it is mirrored.
  struct Place {
    double left = 0, right = 0, top = 0, bottom = 0;
    [[nodiscard]] bool isDrawn() const;
    [[nodiscard]] PixelSize pixels() const;
  };

  [[nodiscard]] Place placeOf(const Rect& rect) const;
  /// nullptr for what could not be decoded.
  void draw(const BitmapRef& pixels, const Place& place);
  void draw(const Bitmap& bitmap, const Place& place);
  /// The same for a place of whole pixels that the bitmap fits.
  void copy(const Bitmap& bitmap, int left, int top);

  [[nodiscard]] std::uint8_t* pixelAt(int x, int y) {
    return bitmap_.rgba.data() +
           (static_cast<std::size_t>(y) * static_cast<std::size_t>(bitmap_.width) + static_cast<std::size_t>(x)) * 4;
  }

  double scale_;
  PixelSize size_;  // that the picture counts as
  Bitmap bitmap_;
  bool isDrawnOn_ = false;
  Axis x_, y_;
};

}  // namespace chatsum::platform::system
