// The report engine: turns a Report request into a file. One shared object without state of its own; `sharedInstance`
// may be called from any thread, but all reports share one date formatter, so two must not be written at once.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "libchatsum/Export.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/Geometry.h"
#include "platform/foundation/Value.h"
#include "platform/interfaces/Graphics.h"

namespace chatsum {

/// File format codes: which writer makes the report, and its extension ("csv", "pdf", "txt").
enum FileFormat : std::int64_t { kFileFormatCSV = 0, kFileFormatPDF = 1, kFileFormatText = 2 };

/// Codes of report errors, which have no domain and keep their text under kUnderlyingErrorKey.
enum ReportErrorCode { kInvalidReportFormat = 1212, kUnableToCreate = 1213 };

/// The keys of a Report request. All are optional.
namespace request {
inline constexpr const char* kFileName = "FILE_NAME";          ///< string, with or without extension
inline constexpr const char* kFileFormat = "FILE_FORMAT";      ///< number, PDF when absent
inline constexpr const char* kAppType = "APP_TYPE";            ///< number, Messages when absent
inline constexpr const char* kReportFormat = "REPORT_FORMAT";  ///< record of one entry: line format → "Key,Key,…"
inline constexpr const char* kColumns = "COLUMNS";             ///< array of titles
inline constexpr const char* kRecords = "RECORDS";             ///< array of records, in output order
}  // namespace request

class CHATSUM_EXPORT CSReportsGenerator {
 public:
  using Success = std::function<void(const std::string& path)>;
  using Failure = std::function<void(const Error& error)>;

  // Text is UTF-8, lengths are points. Each operation forwards to the platform's own and answers the size taken.
  Size sizeForString(std::string_view text, const platform::UIFont& font, Size constrainedToSize);
  Size sizeForString(std::string_view text, const platform::UIFont& font, Size constrainedToSize,
                     platform::LineBreakMode lineBreakMode);
  /// On a single line.
  Size sizeForString(std::string_view text, const platform::UIFont& font, double forWidth,
                     platform::LineBreakMode lineBreakMode);
  Size drawString(std::string_view text, Point atPoint, double forWidth, const platform::UIFont& font,
                  platform::LineBreakMode lineBreakMode);
  Size drawString(std::string_view text, const Rect& inRect, const platform::UIFont& font);
  Size drawString(std::string_view text, const Rect& inRect, const platform::UIFont& font,
                  platform::LineBreakMode lineBreakMode, platform::TextAlignment alignment);

  /// Writes a report without telling how it went. Always false.
  bool generateReport(const Record& request);
  /// Fills the request's defaults, makes the reports folder and runs one writer, all on this thread. `success` gets the
  /// full path of the written file, `failure` the writer's error; either may be empty, and both run on this thread
  /// before the call returns. Neither is called when the folder cannot be made or the File format is unknown. Throws
  /// std::bad_alloc, and what is written of the file then is no report. The result carries no meaning: always false.
  ///
  /// The lines of a text or CSV report of more than 10,000 records are made on a second thread as well: the platform's
  /// uniform types, messages and date formatting and the descriptions of objects in records are asked from both at
  /// once. The result is the same.
  bool generateReport(const Record& request, const Success& success, const Failure& failure);

  // The writers answer none when the file was written. `format` is the request's report format, `columns` an array of
  // titles, `records` an array of records; a wrong kind of format is kInvalidReportFormat, and nothing is written.

  /// One line per record, UTF-8, written in one piece or not at all. The titles are not used.
  std::optional<Error> generateTextReport(const std::string& path, const Value& format, const Value& columns,
                                          const Value& records);
  /// Comma-separated values (cells with a comma, a quote or a newline in double quotes; line end "\n", UTF-8), a row of
  /// titles first, never quoted. Appends to a file that is already there. kUnableToCreate when the file cannot be
  /// opened for writing; later write errors are not told.
  std::optional<Error> generateCSVReport(const std::string& path, const Value& format, const Value& columns,
                                         const Value& records);
  /// A paginated document. kUnableToCreate when the platform offers no drawing context for the path.
  std::optional<Error> generatePDFReport(const std::string& path, const Value& format, const Value& columns,
                                         const Value& records);
  /// Draws the number centred near the foot of the current page.
  void drawPageNumber(std::int64_t pageNumber);

  /// True when the folder is there or could be made.
  bool checkAndCreateReportsFolder(const std::string& folder);

  /// The one instance of the process, made on first use.
  static CSReportsGenerator& sharedInstance();
  /// A file name made of the name, if any, and the current time: "chat_1700000000.25.txt", "1700000000.25.pdf".
  static std::string getDefaultFileName(const std::optional<std::string>& name, std::int64_t fileFormat);

  CSReportsGenerator(const CSReportsGenerator&) = delete;
  CSReportsGenerator& operator=(const CSReportsGenerator&) = delete;

 private:
  CSReportsGenerator() = default;
};

}  // namespace chatsum
