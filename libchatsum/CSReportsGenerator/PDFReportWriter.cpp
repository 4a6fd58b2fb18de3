// The paginated report. Pages are drawn through the platform's PDF context; a platform without one gets an error.

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/CSReportsGenerator/ReportLines.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {

std::optional<Error> CSReportsGenerator::generatePDFReport(const std::string&, const Value& format, const Value&,
                                                           const Value&) {
  constexpr int kInvalidFormatLine = 292;
  if (!format.asRecord()) {
    return invalidReportFormat(format, "-[CSReportsGenerator generatePDFReport:format:columns:records:]",
                               kInvalidFormatLine);
  }
  return reportError(kUnableToCreate, "Unable to generate.");
}

}  // namespace chatsum
