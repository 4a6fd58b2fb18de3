// What a person asks of a report, and the request that the library gets for it. No state, any thread.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/stores/StoreProblem.h"
#include "platform/foundation/Value.h"

namespace chatsum::device {

enum class ReportFormat { kText, kCsv, kPdf };

/// "txt", "csv" or "pdf".
[[nodiscard]] std::string_view extensionOf(ReportFormat format);

struct ReportLayout {
  ReportFormat format = ReportFormat::kText;
  std::vector<std::string> keys = {};                    ///< record keys; empty: Name, Text, Date
  std::optional<std::string> lineFormat = {};            ///< with one "%@" for each key; none: the format's own
  std::optional<std::vector<std::string>> columns = {};  ///< titles; none: those of the content, else the keys
};

/// What the rows of a report are.
struct ReportContent {
  std::int64_t appType = 0;       ///< an AppType code
  std::vector<std::string> keys;  ///< that its records may have
  /// Titles of columns that are not called like their keys: key → title.
  std::map<std::string, std::string_view, std::less<>> titles = {};
};

/// Messages of a conversation.
[[nodiscard]] const ReportContent& messagesContent();

/// "Name, Text ,Date" → its three parts without the blanks around them.
[[nodiscard]] std::vector<std::string> splitList(std::string_view list);

/// Why the layout makes no sense for such rows; none when it does.
[[nodiscard]] std::optional<StoreProblem> checkLayout(const ReportLayout& layout,
                                                      const ReportContent& content = messagesContent());
/// Sentences about a layout that is possible but maybe not meant.
[[nodiscard]] std::vector<std::string> notesOnLayout(const ReportLayout& layout);

/// The library's request for these records under this file name. Numbers that the layout shows become text in the
/// records, since the text writer shows texts only.
[[nodiscard]] Record makeRequest(const ReportLayout& layout, const std::string& fileName, Array records,
                                 const ReportContent& content = messagesContent());

}  // namespace chatsum::device
