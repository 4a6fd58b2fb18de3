// What a report format says of its cells: the keys of a record's values and the kind of each value. One thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace chatsum {

/// The pattern of the "Date" cells. The year is the one of the week on purpose: around New Year it can differ from the
/// calendar's.
inline constexpr const char* kReportDateFormat = "EEE, MM-dd-YYYY hh:mm aa";

/// The error of a report whose format is missing or no dictionary, logged under the operation and line.
[[nodiscard]] Error invalidReportFormat(const Value& format, const char* operation, int line);

/// An error without domain whose localized text stands under kUnderlyingErrorKey.
[[nodiscard]] Error reportError(int code, const char* text);

/// One column of a report.
struct ReportKey {
  RecordField field;
  bool isDate;
};

/// The keys of a format's first entry, not trimmed; none for a format without entries.
[[nodiscard]] std::vector<ReportKey> reportKeys(const Record& format);

/// A date, or a number of whole seconds since `epoch`, itself in seconds since 1970.
[[nodiscard]] Date reportDate(const Value& value, std::int64_t epoch);

enum class FileKind { kOther, kImage, kPdf };

/// What kinds of files names promise. The system is asked once for each extension.
class FileKindMemo {
 public:
  [[nodiscard]] FileKind kindOf(std::string_view name);

 private:
  std::unordered_map<std::string, FileKind> kinds_;
};

}  // namespace chatsum
