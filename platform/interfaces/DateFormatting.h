// Dates in words: patterns of Unicode Technical Standard 35 and the locale's own styles, in the user's locale and zone.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/foundation/Date.h"
#include "platform/foundation/TextBuffer.h"

namespace chatsum::platform {

enum class DateStyle { kNone, kShort, kMedium, kLong, kFull };

/// Writes dates in one fixed form; remembers the text of the last day, so neighbours are cheap. One thread at a time.
class DateText {
 public:
  virtual ~DateText() = default;
  /// Appends the date's text (UTF-8).
  virtual void append(Date date, TextBuffer& text) = 0;
};

class DateFormatting {
 public:
  virtual ~DateFormatting() = default;
  /// Never null; an impossible pattern gives empty texts. Any thread.
  [[nodiscard]] virtual std::unique_ptr<DateText> withPattern(std::string_view pattern) const = 0;
  /// As `withPattern`; `relative` prefers words such as "Today" and "Yesterday" for the day.
  [[nodiscard]] virtual std::unique_ptr<DateText> withStyles(DateStyle date, DateStyle time, bool relative) const = 0;
};

}  // namespace chatsum::platform
