#include "libchatsum/CSReportsGenerator/ReportKeys.h"

#include <algorithm>
#include <cstddef>

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

constexpr const char* kDateKey = "Date";
constexpr std::size_t kMostRemembered = 4096;
constexpr std::size_t kLongestExtension = 40;

}  // namespace

Error reportError(int code, const char* text) {
  return {.domain = std::nullopt,
          .code = code,
          .userInfo = Record{{kUnderlyingErrorKey, platform::current().mainBundle.localizedString(text)}}};
}

Error invalidReportFormat(const Value& format, const char* operation, int line) {
  logging::error(operation, line,
                 "Invalid report format '" + format.description() + "' encountered. Expected NSDictionary.");
  return reportError(kInvalidReportFormat, "Invalid report format encountered.");
}

std::vector<ReportKey> reportKeys(const Record& format) {
  std::vector<ReportKey> keys;
  if (format.empty()) return keys;
  const std::string list = format.valueAt(0).description();
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t end = std::min(list.find(',', start), list.size());
    const std::string_view key = std::string_view(list).substr(start, end - start);
    keys.push_back({RecordField(key), key == kDateKey});
    start = end + 1;
  }
  return keys;
}

Date reportDate(const Value& value, std::int64_t epoch) {
  if (const Date* date = value.asDate()) return *date;
  return {static_cast<double>(value.integerValue()) + static_cast<double>(epoch)};
}

FileKind FileKindMemo::kindOf(std::string_view name) {
  const std::string_view extension = path::extensionView(name);
  // Most texts with a dot are sentences: what follows it is no extension when it is long or holds a blank.
  if (extension.empty() || extension.size() > kLongestExtension || extension.find(' ') != std::string_view::npos) {
    return FileKind::kOther;
  }
  if (kinds_.size() > kMostRemembered) kinds_.clear();
  const auto [place, isNew] = kinds_.try_emplace(std::string(extension), FileKind::kOther);
  if (isNew) {
    if (ChatsumUtils::isImageFile(name)) {
      place->second = FileKind::kImage;
    } else if (ChatsumUtils::isPDFFile(name)) {
      place->second = FileKind::kPdf;
    }
  }
  return place->second;
}

}  // namespace chatsum
