#include "platform/system/dates/RelativeDayText.h"

#include <unicode/udisplaycontext.h>

#include <cmath>

namespace chatsum::platform::system {
namespace {

double localDay(ZoneOffset& offset, double millis) {
  return std::floor((millis + offset.at(millis).offset) / 86400000);
}

}  // namespace

RelativeDayText::RelativeDayText(const icu::Locale& locale, std::shared_ptr<const DateFormatter> absolute,
                                 std::shared_ptr<const DateFormatter> time, const Clock& clock)
    : formatter_(std::move(absolute)),
      absolute_(formatter_),
      clock_(clock),
      offset_(formatter_->zone()),
      todaysOffset_(formatter_->zone()) {
  if (time) time_.emplace(std::move(time));
  UErrorCode status = U_ZERO_ERROR;
  words_ = std::make_unique<icu::RelativeDateTimeFormatter>(locale, nullptr, UDAT_STYLE_LONG,
                                                            UDISPCTX_CAPITALIZATION_FOR_BEGINNING_OF_SENTENCE, status);
  if (U_FAILURE(status)) words_.reset();
}

icu::UnicodeString RelativeDayText::word(double days) const {
  constexpr UDateDirection kDirections[] = {UDAT_DIRECTION_LAST_2, UDAT_DIRECTION_LAST, UDAT_DIRECTION_THIS,
                                            UDAT_DIRECTION_NEXT, UDAT_DIRECTION_NEXT_2};
  icu::UnicodeString result;
  if (!words_ || !(std::abs(days) <= 2)) return result;
  UErrorCode status = U_ZERO_ERROR;
  words_->format(kDirections[static_cast<int>(days) + 2], UDAT_ABSOLUTE_DAY, result, status);
  if (U_FAILURE(status)) result.remove();
  return result;
}

void RelativeDayText::append(Date date, TextBuffer& text) {
  const double millis = wholeMillis(date);
  const double now = wholeMillis(clock_.now());
  icu::UnicodeString words = word(localDay(offset_, millis) - localDay(todaysOffset_, now));
  if (words.isEmpty()) {
    absolute_.append(date, text);
    return;
  }
  if (time_) {
    TextBuffer clock;
    time_->append(date, clock);
    const auto view = clock.view();
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString both;
    words_->combineDateAndTime(
        words, icu::UnicodeString::fromUTF8({view.data(), static_cast<std::int32_t>(view.size())}), both, status);
    if (U_FAILURE(status)) {
      absolute_.append(date, text);
      return;
    }
    words = both;
  }
  std::string result;
  words.toUTF8String(result);
  text.append(result);
}

}  // namespace chatsum::platform::system
