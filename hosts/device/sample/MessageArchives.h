// Writes the property lists that stand in columns of messages: what a message was before it was edited, link previews
// and cards of apps. Pure functions, the same bytes every time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace chatsum::device {

struct SampleVersion {
  std::string_view text;  ///< UTF-8
  double date = 0;        ///< seconds since 2001-01-01T00:00:00Z
};

struct SamplePart {
  int number = 0;
  std::vector<SampleVersion> versions;  ///< the oldest first, the present one last
};

/// The column `message_summary_info` of a message with edited parts and parts that were taken back.
[[nodiscard]] std::string messageHistory(const std::vector<SamplePart>& edited, const std::vector<int>& unsent);

/// The column `payload_data` of a link preview. Whatever is empty is left out.
[[nodiscard]] std::string linkPreview(std::string_view url, std::string_view title);

/// The same of an app's card.
[[nodiscard]] std::string appCard(std::string_view appName, std::string_view caption, std::string_view url);

}  // namespace chatsum::device
