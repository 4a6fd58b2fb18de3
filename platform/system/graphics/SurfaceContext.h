// An offscreen surface as the current context. Lines are not drawn there. One thread at a time.
#pragma once

#include "platform/interfaces/Graphics.h"
#include "platform/system/images/ImageSurface.h"

namespace chatsum::platform::system {

class SurfaceContext final : public GraphicsContext {
 public:
  SurfaceContext(Size size, double scale) : surface_(size, scale) {}

  [[nodiscard]] ImageSurface& surface() { return surface_; }

  void setStrokeColor(const Color&) override {}
  void setLineWidth(double) override {}
  void moveTo(Point) override {}
  void addLineTo(Point) override {}
  void strokePath() override {}
  void translate(double x, double y) override { surface_.translate(x, y); }
  void scale(double x, double y) override { surface_.scale(x, y); }
  void drawPDFPage(const PDFPage& page) override { surface_.drawPDFPage(page); }

 private:
  ImageSurface surface_;
};

}  // namespace chatsum::platform::system
