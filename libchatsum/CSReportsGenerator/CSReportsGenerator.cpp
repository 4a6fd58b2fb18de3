#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"

#include <array>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/foundation/Description.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

struct FormatRow {
  const char* extension;
  const char* lineFormat;
};
/// By File format code.
constexpr std::array<FormatRow, 3> kFormats = {{
    {"csv", "%@,%@,%@"},
    {"pdf", "%@ %@ %@"},
    {"txt", "%@: %@ (%@)"},
}};
constexpr const char* kDefaultKeys = "Name,Text,Date";

/// The row of a File format, nullptr for codes outside the table.
const FormatRow* formatRow(std::int64_t fileFormat) {
  const auto index = static_cast<std::uint64_t>(fileFormat);
  return index < kFormats.size() ? &kFormats[index] : nullptr;
}

std::int64_t integerOr(const Record& request, const char* key, std::int64_t fallback) {
  const Value& value = request[key];
  return value.isNone() ? fallback : value.integerValue();
}

Value reportFormat(const Record& request, const FormatRow* row) {
  const Value& given = request[request::kReportFormat];
  if (!given.isNone() || !row) return given;
  return Record{{row->lineFormat, kDefaultKeys}};
}

}  // namespace

CSReportsGenerator& CSReportsGenerator::sharedInstance() {
  static CSReportsGenerator instance;
  return instance;
}

bool CSReportsGenerator::generateReport(const Record& request) { return generateReport(request, nullptr, nullptr); }

bool CSReportsGenerator::generateReport(const Record& request, const Success& success, const Failure& failure) {
  constexpr const char* kOperation = "-[CSReportsGenerator generateReport:success:failure:]";
  constexpr int kPathLine = 113, kFileFormatLine = 114, kAppTypeLine = 115, kFormatLine = 116;

  const std::int64_t fileFormat = integerOr(request, request::kFileFormat, kFileFormatPDF);
  const std::int64_t appType = integerOr(request, request::kAppType, kAppTypeMessages);
  const FormatRow* row = formatRow(fileFormat);
  const Value format = reportFormat(request, row);
  const Value& givenName = request[request::kFileName];
  std::string name = givenName.isNone() ? getDefaultFileName(std::nullopt, fileFormat) : givenName.description();
  if (row && path::extensionView(name).empty()) name = path::appendingExtension(name, row->extension);

  const std::string folder = ChatsumUtils::defaultLocation(appType);
  if (!checkAndCreateReportsFolder(folder)) return false;
  const std::string fullPath = path::appending(folder, name);
  logging::information(kOperation, kPathLine, "Generating report at " + fullPath);
  logging::information(kOperation, kFileFormatLine, "Generating report for fileFormat " + std::to_string(fileFormat));
  logging::information(kOperation, kAppTypeLine, "Generating report for appType " + std::to_string(appType));
  logging::information(kOperation, kFormatLine, "Generating report for format " + format.description());

  const Value& columns = request[request::kColumns];
  const Value& records = request[request::kRecords];
  std::optional<Error> error;
  switch (fileFormat) {
    case kFileFormatCSV: error = generateCSVReport(fullPath, format, columns, records); break;
    case kFileFormatPDF: error = generatePDFReport(fullPath, format, columns, records); break;
    case kFileFormatText: error = generateTextReport(fullPath, format, columns, records); break;
    default: return false;
  }
  if (error) {
    if (failure) failure(*error);
  } else if (success) {
    success(fullPath);
  }
  return false;
}

bool CSReportsGenerator::checkAndCreateReportsFolder(const std::string& folder) {
  return ChatsumUtils::isFolderAlreadyExists(folder) || ChatsumUtils::createFolderAt(folder);
}

std::string CSReportsGenerator::getDefaultFileName(const std::optional<std::string>& name, std::int64_t fileFormat) {
  const std::string stamp = description::plainDecimal(platform::current().clock.now().secondsSince1970);
  const FormatRow* row = formatRow(fileFormat);
  return (name ? *name + "_" : std::string()) + stamp + "." + (row ? row->extension : "(null)");
}

}  // namespace chatsum
