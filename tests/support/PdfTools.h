// Looks at PDF files with programs that know nothing of the ones that wrote them: poppler's pdftotext, pdftoppm,
// pdffonts and pdfinfo, qpdf, and MuPDF's mutool. A file that such a program cannot read throws std::runtime_error with
// what the program said. No state, any thread.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace chatsum::test {

/// A character where it stands on a page, in points from the page's top left corner.
struct PdfCharacter {
  std::size_t page = 0;  ///< the first is 1
  double left = 0, right = 0;
  double baseline = 0;
  double size = 0;    ///< of its font
  std::string color;  ///< "#rrggbb"
  std::string text;   ///< UTF-8
};

struct PdfFont {
  std::string name, type;
  bool isEmbedded = false, isSubset = false, hasUnicode = false;
};

/// The characters that MuPDF sees, in the order of the pages; blanks between words are among them.
[[nodiscard]] std::vector<PdfCharacter> pdfCharacters(const std::filesystem::path& file);
/// The text in the order in which it was drawn; a form feed ends a page.
[[nodiscard]] std::string pdfRawText(const std::filesystem::path& file);
[[nodiscard]] std::vector<PdfFont> pdfFonts(const std::filesystem::path& file);
[[nodiscard]] std::size_t pdfPageCount(const std::filesystem::path& file);
/// What `qpdf --check` finds wrong; empty when nothing is.
[[nodiscard]] std::string pdfProblems(const std::filesystem::path& file);

enum class PdfViewer { kPoppler, kMuPdf };
/// Draws a page into a PNG file, a pixel for each point.
void drawPdfPage(const std::filesystem::path& file, std::size_t page, const std::filesystem::path& png,
                 PdfViewer viewer = PdfViewer::kPoppler);

}  // namespace chatsum::test
