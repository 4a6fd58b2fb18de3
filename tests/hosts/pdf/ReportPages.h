// Where things stand on the pages of a PDF report. No state, any thread.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace chatsum::test {

/// Characters on one baseline of one column; points from the page's top left corner.
struct ReportLine {
  std::size_t page = 0;
  double left = 0, right = 0, baseline = 0;
  std::string color;
  std::string text;  ///< UTF-8, without blanks at its end
};
using ReportLines = std::vector<ReportLine>;

/// The texts of a report by what they are, which their font sizes tell. Each in the order of pages, then downwards.
struct ReportPages {
  ReportLines title, notices;          ///< the notices' link is a line of its own
  ReportLines columnTitles;            ///< from left to right
  std::array<ReportLines, 3> columns;  ///< lines of cells
  ReportLines numbers;
};

[[nodiscard]] ReportPages readReportPages(const std::filesystem::path& file);
[[nodiscard]] std::vector<std::string> textsOf(const ReportLines& lines);

}  // namespace chatsum::test
