// The comma-separated report: a row of titles, then one row per record.

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/CSReportsGenerator/ReportLines.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

constexpr const char* kOperation = "-[CSReportsGenerator generateCSVReport:format:columns:records:]";

/// Appends a cell, in double quotes with its own quotes doubled when it holds a comma, a quote or a line end.
void appendQuoted(std::string_view cell, TextBuffer& text) {
  if (cell.find_first_of(",\"\n") == std::string_view::npos) {
    text.append(cell);
    return;
  }
  text.append('"');
  for (std::size_t start = 0; start < cell.size();) {
    const std::size_t quote = cell.find('"', start);
    if (quote == std::string_view::npos) {
      text.append(cell.substr(start));
      break;
    }
    text.append(cell.substr(start, quote + 1 - start));
    text.append('"');
    start = quote + 1;
  }
  text.append('"');
}

struct CSVCells {
  std::unique_ptr<platform::DateText> dates;
  TextBuffer date;  // the date of one cell, before it is quoted

  void appendText(std::string_view string, TextBuffer& text) { appendQuoted(string, text); }
  void appendDate(Date value, TextBuffer& text) {
    if (!dates) dates = ChatsumUtils::dateFormatter().useDateFormat(kReportDateFormat);
    date.clear();
    dates->append(value, date);
    appendQuoted(date.view(), text);
  }
  void appendOther(const Value& value, TextBuffer& text) { appendQuoted(value.description(), text); }
};

/// The titles joined with ","; what "%@" prints for a missing list when there is none.
std::string header(const Value& columns) {
  const Array* titles = columns.asArray();
  if (!titles) return columns.description() + "\n";
  std::string line;
  for (std::size_t i = 0; i < titles->size(); ++i) line += (i ? "," : "") + (*titles)[i].description();
  return line + "\n";
}

}  // namespace

std::optional<Error> CSReportsGenerator::generateCSVReport(const std::string& path, const Value& format,
                                                           const Value& columns, const Value& records) {
  constexpr int kInvalidFormatLine = 220, kNoHandleLine = 233, kWritingLine = 284;
  const Record* dictionary = format.asRecord();
  if (!dictionary) return invalidReportFormat(format, kOperation, kInvalidFormatLine);
  ReportLines lines(*dictionary, kSecondsFrom1970To2001);
  if (!lines.hasLine()) return std::nullopt;

  auto& files = platform::current().files;
  if (!files.exists(path)) (void)files.createFile(path);  // a failure shows when the file is opened
  const auto file = files.openForWriting(path);
  if (!file) {
    logging::error(kOperation, kNoHandleLine, "Unable to create handle for file at path " + path);
    return reportError(kUnableToCreate, "Unable to create handle.");
  }
  // An existing report keeps its rows; callers that want a fresh file remove the old one first.
  file->truncateAt(file->seekToEnd());
  (void)file->write(header(columns));  // write errors are not told here: hosts check the file

  TextBuffer text;
  lines.append<CSVCells>(records, text);
  logging::information(kOperation, kWritingLine, "Writing data to file " + path);
  (void)file->write(text.view());
  return std::nullopt;
}

}  // namespace chatsum
