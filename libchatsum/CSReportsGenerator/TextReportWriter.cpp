// The plain-text report: one line per record.

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/CSReportsGenerator/ReportLines.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

constexpr const char* kOperation = "-[CSReportsGenerator generateTextReport:format:columns:records:]";

struct TextCells {
  std::unique_ptr<platform::DateText> dates;

  void appendText(std::string_view string, TextBuffer& text) { text.append(string); }
  void appendDate(Date date, TextBuffer& text) {
    if (!dates) dates = ChatsumUtils::dateFormatter().useDateFormat(kReportDateFormat);
    dates->append(date, text);
  }
  void appendOther(const Value&, TextBuffer&) {}  // only strings and dates are printed
};

}  // namespace

std::optional<Error> CSReportsGenerator::generateTextReport(const std::string& path, const Value& format, const Value&,
                                                            const Value& records) {
  constexpr int kInvalidFormatLine = 169, kWritingLine = 205, kWrittenLine = 208, kFailedLine = 211;
  const Record* dictionary = format.asRecord();
  if (!dictionary) return invalidReportFormat(format, kOperation, kInvalidFormatLine);

  // A number under "Date" counts from 1970 here, from 2001 in the other reports.
  ReportLines lines(*dictionary, 0);
  if (!lines.hasLine()) return std::nullopt;
  TextBuffer text;
  lines.append<TextCells>(records, text);

  logging::information(kOperation, kWritingLine, "Writing data to file " + path);
  if (auto error = platform::current().files.writeAtomically(path, text.view())) {
    logging::error(kOperation, kFailedLine, "Error while writing to file. Error: " + error->localizedDescription());
    return error;
  }
  logging::information(kOperation, kWrittenLine, "File " + path + " successfully written.");
  return std::nullopt;
}

}  // namespace chatsum
