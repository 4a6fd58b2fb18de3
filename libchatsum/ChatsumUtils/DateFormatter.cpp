#include "libchatsum/ChatsumUtils/DateFormatter.h"

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/TextBuffer.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {

DateFormatter& ChatsumUtils::dateFormatter() {
  static DateFormatter formatter;
  return formatter;
}

std::string DateFormatter::dateFormat() const {
  const std::lock_guard lock(mutex_);
  return pattern_;
}

void DateFormatter::setDateFormat(std::string_view pattern) {
  const std::lock_guard lock(mutex_);
  usePattern(pattern);
}

void DateFormatter::setStyles(platform::DateStyle date, platform::DateStyle time, bool relative) {
  const std::lock_guard lock(mutex_);
  pattern_.clear();
  text_ = platform::current().dateFormatting.withStyles(date, time, relative);
}

std::string DateFormatter::stringFromDate(Date date) const {
  const std::lock_guard lock(mutex_);
  TextBuffer text;
  if (text_) text_->append(date, text);
  return std::string(text.view());
}

std::unique_ptr<platform::DateText> DateFormatter::useDateFormat(std::string_view pattern) {
  setDateFormat(pattern);
  return platform::current().dateFormatting.withPattern(pattern);
}

void DateFormatter::usePattern(std::string_view pattern) {
  if (text_ && !pattern_.empty() && pattern_ == pattern) return;
  pattern_ = pattern;
  text_ = platform::current().dateFormatting.withPattern(pattern);
}

}  // namespace chatsum
