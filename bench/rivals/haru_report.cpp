// Writes the rows of the PDF report with libharu: words wrapped by its own text widths, one embedded TrueType font, no
// shaping and no second font for characters that it lacks.
//
//   haru_report ROWS REPORT FONT-FILE

#include <hpdf.h>

#include <cstdio>
#include <string_view>
#include <vector>

#include "bench/rivals/ReportPages.h"

namespace {

using namespace chatsum::bench;

void tellProblem(HPDF_STATUS code, HPDF_STATUS detail, void*) {
  std::fprintf(stderr, "libharu: problem %04lx, detail %lu\n", code, detail);
}

class HaruCanvas final : public Canvas {
 public:
  explicit HaruCanvas(const char* fontFile) : document_(HPDF_New(tellProblem, nullptr)) {
    HPDF_SetCompressionMode(document_, HPDF_COMP_ALL);
    HPDF_UseUTFEncodings(document_);
    const char* name = HPDF_LoadTTFontFromFile(document_, fontFile, HPDF_TRUE);
    if (name) font_ = HPDF_GetFont(document_, name, "UTF-8");
    if (!font_) return;
    constexpr double kThousandths = 1000;
    ascent_ = HPDF_Font_GetAscent(font_) / kThousandths;
    lineHeight_ = ascent_ - HPDF_Font_GetDescent(font_) / kThousandths;
  }
  ~HaruCanvas() override { HPDF_Free(document_); }
  HaruCanvas(const HaruCanvas&) = delete;
  HaruCanvas& operator=(const HaruCanvas&) = delete;

  void beginPage() override {
    page_ = HPDF_AddPage(document_);
    HPDF_Page_SetWidth(page_, static_cast<HPDF_REAL>(kPageWidth));
    HPDF_Page_SetHeight(page_, static_cast<HPDF_REAL>(kPageHeight));
    constexpr HPDF_REAL kDarkGrey = 1.0F / 3;
    HPDF_Page_SetRGBFill(page_, kDarkGrey, kDarkGrey, kDarkGrey);
    HPDF_Page_SetRGBStroke(page_, kDarkGrey, kDarkGrey, kDarkGrey);
  }

  double measureCell(const std::string& text) override {
    lines_.clear();
    for (std::string_view rest = text; !rest.empty();) {
      const std::string_view paragraph = rest.substr(0, rest.find('\n'));
      wrap(paragraph);
      rest.remove_prefix(std::min(paragraph.size() + 1, rest.size()));
    }
    return static_cast<double>(lines_.size()) * lineHeight_ * kTextSize;
  }

  void showCell(double x, double y) override {
    if (lines_.empty()) return;
    HPDF_Page_BeginText(page_);
    HPDF_Page_SetFontAndSize(page_, font_, static_cast<HPDF_REAL>(kTextSize));
    HPDF_Page_SetTextLeading(page_, static_cast<HPDF_REAL>(lineHeight_ * kTextSize));
    HPDF_Page_MoveTextPos(page_, static_cast<HPDF_REAL>(x), baseline(y, kTextSize));
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      if (i) HPDF_Page_MoveToNextLine(page_);
      if (!lines_[i].empty()) HPDF_Page_ShowText(page_, lines_[i].c_str());
    }
    HPDF_Page_EndText(page_);
  }

  double showLine(const std::string& text, double x, double y, double size) override {
    HPDF_Page_BeginText(page_);
    HPDF_Page_SetFontAndSize(page_, font_, static_cast<HPDF_REAL>(size));
    HPDF_Page_TextOut(page_, static_cast<HPDF_REAL>(x), baseline(y, size), text.c_str());
    HPDF_Page_EndText(page_);
    return lineHeight_ * size;
  }

  void showRule(double left, double right, double y) override {
    const auto height = static_cast<HPDF_REAL>(kPageHeight - y);
    HPDF_Page_SetLineWidth(page_, 2);
    HPDF_Page_MoveTo(page_, static_cast<HPDF_REAL>(left), height);
    HPDF_Page_LineTo(page_, static_cast<HPDF_REAL>(right), height);
    HPDF_Page_Stroke(page_);
  }

  [[nodiscard]] bool hasFont() const { return font_ != nullptr; }
  bool save(const char* file) { return HPDF_SaveToFile(document_, file) == HPDF_OK; }

 private:
  /// Appends the lines of text without line ends. A word that is wider than a line is cut.
  void wrap(std::string_view text) {
    do {
      const auto* bytes = reinterpret_cast<const HPDF_BYTE*>(text.data());
      const auto count = static_cast<HPDF_UINT>(text.size());
      const auto width = static_cast<HPDF_REAL>(kColumnWidth), size = static_cast<HPDF_REAL>(kTextSize);
      HPDF_UINT fits = HPDF_Font_MeasureText(font_, bytes, count, width, size, 0, 0, HPDF_TRUE, nullptr);
      if (fits == 0) fits = HPDF_Font_MeasureText(font_, bytes, count, width, size, 0, 0, HPDF_FALSE, nullptr);
      if (fits == 0) fits = count;
      lines_.emplace_back(text.substr(0, fits));
      text.remove_prefix(std::min<std::size_t>(fits, text.size()));
    } while (!text.empty());
  }

  HPDF_REAL baseline(double top, double size) const {
    return static_cast<HPDF_REAL>(kPageHeight - top - ascent_ * size);
  }

  HPDF_Doc document_;
  HPDF_Font font_ = nullptr;
  HPDF_Page page_ = nullptr;
  double ascent_ = 0, lineHeight_ = 0;
  std::vector<std::string> lines_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: haru_report ROWS REPORT FONT-FILE\n");
    return 2;
  }
  HaruCanvas canvas(argv[3]);
  if (!canvas.hasFont()) {
    std::fprintf(stderr, "%s cannot be embedded\n", argv[3]);
    return 1;
  }
  ReportPages(canvas).write(argv[1]);
  return canvas.save(argv[2]) ? 0 : 1;
}
