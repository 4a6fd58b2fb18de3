// What a message was before it was edited or partly taken back: the column `message_summary_info`. No state, any
// thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace chatsum::device {

struct MessageHistory {
  struct Part {
    std::int64_t number = 0;
    std::vector<std::string> versions;  ///< the oldest first, UTF-8; the last is what stands there now
  };
  std::vector<Part> edited;          ///< by number
  std::vector<std::int64_t> unsent;  ///< numbers of parts that were taken back, ascending, each once
  double lastEdit = 0;               ///< seconds since 2001, 0 when it is not known
};

/// Reads the column's property list; what is damaged or unknown is left out.
[[nodiscard]] MessageHistory readHistory(std::string_view summaryInfo);

/// The texts that were there before, the oldest first, only as far as they differ from the one behind them and from
/// `now`, the message's present text.
[[nodiscard]] std::vector<std::string> earlierTexts(const MessageHistory& history, std::string_view now);

}  // namespace chatsum::device
