// The date formatter that all reports share: it holds a pattern or styles, and whoever uses it sets what it needs first
// and leaves it so. Every operation may be called from any thread, but two reports written at once take each other's
// pattern away.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "libchatsum/Export.h"
#include "platform/foundation/Date.h"
#include "platform/interfaces/DateFormatting.h"

namespace chatsum {

class CHATSUM_EXPORT DateFormatter {
 public:
  /// The pattern in use; empty at first and after `setStyles`.
  [[nodiscard]] std::string dateFormat() const;
  void setDateFormat(std::string_view pattern);
  /// `relative` prefers "Today" and "Yesterday" for the day.
  void setStyles(platform::DateStyle date, platform::DateStyle time, bool relative);

  /// The date's text (UTF-8) in the current pattern or styles; empty before one is set.
  [[nodiscard]] std::string stringFromDate(Date date) const;
  /// Sets the pattern and answers a writer of dates in it: a report's own, so that each of its many dates need not come
  /// here. Never null.
  [[nodiscard]] std::unique_ptr<platform::DateText> useDateFormat(std::string_view pattern);

 private:
  void usePattern(std::string_view pattern);

  mutable std::mutex mutex_;
  std::string pattern_;
  std::unique_ptr<platform::DateText> text_;
};

}  // namespace chatsum
