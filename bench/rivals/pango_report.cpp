// Writes the rows of the PDF report with Pango and cairo, one layout for each cell.
//
//   pango_report ROWS REPORT FONT-FAMILIES

#include <cairo-pdf.h>
#include <pango/pangocairo.h>

#include <cmath>
#include <cstdio>

#include "bench/rivals/ReportPages.h"

namespace {

using namespace chatsum::bench;

class PangoCanvas final : public Canvas {
 public:
  PangoCanvas(const char* file, const char* families)
      : families_(families),
        surface_(cairo_pdf_surface_create(file, kPageWidth, kPageHeight)),
        cairo_(cairo_create(surface_)) {
    cell_ = layoutOf(kTextSize);
    pango_layout_set_width(cell_, pango_units_from_double(kColumnWidth));
    pango_layout_set_wrap(cell_, PANGO_WRAP_WORD_CHAR);
  }
  ~PangoCanvas() override {
    g_object_unref(cell_);
    cairo_destroy(cairo_);
    cairo_surface_destroy(surface_);
  }
  PangoCanvas(const PangoCanvas&) = delete;
  PangoCanvas& operator=(const PangoCanvas&) = delete;

  void beginPage() override {
    if (hasPage_) cairo_show_page(cairo_);
    hasPage_ = true;
    constexpr double kDarkGrey = 1.0 / 3;
    cairo_set_source_rgb(cairo_, kDarkGrey, kDarkGrey, kDarkGrey);
  }

  double measureCell(const std::string& text) override {
    pango_layout_set_text(cell_, text.data(), static_cast<int>(text.size()));
    return heightOf(cell_);
  }

  void showCell(double x, double y) override { show(cell_, x, y); }

  double showLine(const std::string& text, double x, double y, double size) override {
    PangoLayout* layout = layoutOf(size);
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    show(layout, x, y);
    const double height = heightOf(layout);
    g_object_unref(layout);
    return height;
  }

  void showRule(double left, double right, double y) override {
    cairo_set_line_width(cairo_, 2);
    cairo_move_to(cairo_, left, y);
    cairo_line_to(cairo_, right, y);
    cairo_stroke(cairo_);
  }

  /// Writes what is left; false when something could not be written.
  bool finish() {
    if (hasPage_) cairo_show_page(cairo_);
    cairo_surface_finish(surface_);
    return cairo_status(cairo_) == CAIRO_STATUS_SUCCESS && cairo_surface_status(surface_) == CAIRO_STATUS_SUCCESS;
  }

 private:
  PangoLayout* layoutOf(double size) {
    PangoLayout* layout = pango_cairo_create_layout(cairo_);
    PangoFontDescription* font = pango_font_description_new();
    pango_font_description_set_family(font, families_);
    pango_font_description_set_absolute_size(font, size * PANGO_SCALE);
    pango_layout_set_font_description(layout, font);
    pango_font_description_free(font);
    return layout;
  }

  static double heightOf(PangoLayout* layout) {
    int width = 0, height = 0;
    pango_layout_get_size(layout, &width, &height);
    return std::ceil(pango_units_to_double(height));
  }

  void show(PangoLayout* layout, double x, double y) {
    cairo_move_to(cairo_, x, y);
    pango_cairo_show_layout(cairo_, layout);
  }

  const char* families_;
  cairo_surface_t* surface_;
  cairo_t* cairo_;
  PangoLayout* cell_;
  bool hasPage_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: pango_report ROWS REPORT FONT-FAMILIES\n");
    return 2;
  }
  PangoCanvas canvas(argv[2], argv[3]);
  ReportPages(canvas).write(argv[1]);
  return canvas.finish() ? 0 : 1;
}
