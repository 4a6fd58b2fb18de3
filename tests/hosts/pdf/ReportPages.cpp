#include "tests/hosts/pdf/ReportPages.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "tests/support/PdfTools.h"

namespace chatsum::test {
namespace {

namespace fs = std::filesystem;

constexpr double kLeft = 50, kColumnWidth = 250;
constexpr double kTitleSize = 20, kColumnTitleSize = 16, kCellSize = 14, kNumberSize = 12, kNoticeSize = 10;

std::size_t columnAt(double x) {
  constexpr double kSlack = 0.01;
  return x < kLeft + kColumnWidth - kSlack ? 0 : x < kLeft + 2 * kColumnWidth - kSlack ? 1 : 2;
}

/// The characters of one font size as lines. Where columns count, a line ends with its column.
ReportLines linesOfSize(std::vector<PdfCharacter> characters, double size, bool inColumns) {
  std::erase_if(characters, [size](const PdfCharacter& one) { return std::abs(one.size - size) > 0.01; });
  // A line has one baseline, whatever its fonts.
  const auto tenths = [](double length) { return std::lround(length * 10); };
  std::stable_sort(characters.begin(), characters.end(), [&](const PdfCharacter& a, const PdfCharacter& b) {
    return std::tuple(a.page, tenths(a.baseline), a.left) < std::tuple(b.page, tenths(b.baseline), b.left);
  });
  ReportLines lines;
  for (const PdfCharacter& one : characters) {
    const bool continues = !lines.empty() && lines.back().page == one.page &&
                           tenths(lines.back().baseline) == tenths(one.baseline) && lines.back().color == one.color &&
                           (!inColumns || columnAt(lines.back().left) == columnAt(one.left));
    if (!continues) lines.push_back({one.page, one.left, one.left, one.baseline, one.color, ""});
    lines.back().text += one.text;
    if (one.text != " ") lines.back().right = one.right;
  }
  for (ReportLine& line : lines) line.text.erase(line.text.find_last_not_of(' ') + 1);
  std::erase_if(lines, [](const ReportLine& line) { return line.text.empty(); });
  return lines;
}

}  // namespace

ReportPages readReportPages(const fs::path& file) {
  const std::vector<PdfCharacter> characters = pdfCharacters(file);
  ReportPages pages;
  pages.title = linesOfSize(characters, kTitleSize, false);
  pages.notices = linesOfSize(characters, kNoticeSize, false);
  pages.columnTitles = linesOfSize(characters, kColumnTitleSize, true);
  pages.numbers = linesOfSize(characters, kNumberSize, false);
  for (ReportLine& line : linesOfSize(characters, kCellSize, true)) {
    pages.columns[columnAt(line.left)].push_back(std::move(line));
  }
  return pages;
}

std::vector<std::string> textsOf(const ReportLines& lines) {
  std::vector<std::string> texts;
  for (const ReportLine& line : lines) texts.push_back(line.text);
  return texts;
}

}  // namespace chatsum::test
