#include "libchatsum/CSReportsGenerator/ReportLines.h"

#include <algorithm>

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/ChatsumUtils/Logging.h"
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

ReportLines::ReportLines(const Record& format, std::int64_t epoch) : epoch_(epoch) {
  if (format.empty()) return;
  line_.emplace(format.keyAt(0));
  const std::string list = format.valueAt(0).description();
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t end = std::min(list.find(',', start), list.size());
    const std::string_view key = std::string_view(list).substr(start, end - start);
    keys_.push_back({RecordField(key), key == kDateKey});
    start = end + 1;
  }
}

Date ReportLines::dateOf(const Value& value) const {
  if (const Date* date = value.asDate()) return *date;
  return {static_cast<double>(value.integerValue()) + static_cast<double>(epoch_)};
}

bool ReportLines::namesImage(std::string_view text) {
  const std::string_view extension = path::extensionView(text);
  // Most texts with a dot are sentences: what follows it is no extension when it is long or holds a blank.
  if (extension.empty() || extension.size() > kLongestExtension || extension.find(' ') != std::string_view::npos) {
    return false;
  }
  if (imageExtensions_.size() > kMostRemembered) imageExtensions_.clear();
  const auto [place, isNew] = imageExtensions_.try_emplace(std::string(extension), false);
  if (isNew) place->second = ChatsumUtils::isImageFile(text);
  return place->second;
}

}  // namespace chatsum
