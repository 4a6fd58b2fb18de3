#include "platform/system/dates/DateFormatter.h"

#include <unicode/fieldpos.h>
#include <unicode/fpositer.h>

#include <cstring>
#include <optional>
#include <string_view>

namespace chatsum::platform::system {
namespace {

constexpr char16_t kThinSpace = 0x202F;
constexpr double kHour = 3600000;
constexpr double kMinute = 60000;
constexpr double kSecond = 1000;

std::optional<ClockUnit> clockUnit(std::int32_t field) {
  switch (field) {
    case UDAT_HOUR0_FIELD:
    case UDAT_HOUR1_FIELD:
    case UDAT_HOUR_OF_DAY0_FIELD:
    case UDAT_HOUR_OF_DAY1_FIELD:
    case UDAT_AM_PM_FIELD:
      return ClockUnit::kHour;
    case UDAT_MINUTE_FIELD:
      return ClockUnit::kMinute;
    case UDAT_SECOND_FIELD:
      return ClockUnit::kSecond;
    default:
      return std::nullopt;
  }
}

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

}  // namespace

DateFormatter::DateFormatter(std::unique_ptr<icu::SimpleDateFormat> format, std::shared_ptr<const icu::TimeZone> zone)
    : format_(std::move(format)), zone_(std::move(zone)) {
  if (!format_) return;
  format_->setTimeZone(*zone_);
  known_ = changesByDayOnly() && learnClockTexts();
}

std::unique_ptr<icu::Calendar> DateFormatter::makeCalendar() const {
  if (!format_) return nullptr;
  std::unique_ptr<icu::Calendar> calendar(format_->getCalendar()->clone());
  calendar->setTimeZone(*zone_);
  return calendar;
}

std::string DateFormatter::text(double millis, icu::Calendar& calendar, std::vector<Place>* clock) const {
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString text;
  icu::FieldPositionIterator places;
  calendar.setTime(millis, status);
  format_->format(calendar, text, clock ? &places : nullptr, status);
  if (U_FAILURE(status)) return "";
  text.findAndReplace(icu::UnicodeString(kThinSpace), icu::UnicodeString(u' '));
  if (!clock) return utf8(text);

  clock->clear();
  std::string result;
  std::int32_t done = 0;
  const auto appendUpTo = [&](std::int32_t end) {
    text.tempSubStringBetween(done, end).toUTF8String(result);
    done = end;
    return result.size();
  };
  for (icu::FieldPosition place; places.next(place);) {
    const auto unit = clockUnit(place.getField());
    if (!unit) continue;
    const std::size_t begin = appendUpTo(place.getBeginIndex());
    clock->push_back({begin, appendUpTo(place.getEndIndex()), *unit});
  }
  appendUpTo(text.length());
  return result;
}

/// Looks at the letters of the pattern outside quotes: parts of the clock that are learned below, and parts of the
/// calendar that are the same all day. Fractions of seconds, day periods and zone names are neither.
bool DateFormatter::changesByDayOnly() const {
  constexpr std::string_view kKnown = "hHkKmsaGyYuUrQqMLwWdDFEecg";
  icu::UnicodeString pattern;
  format_->toPattern(pattern);
  bool quoted = false;
  for (std::int32_t i = 0; i < pattern.length(); ++i) {
    const char16_t c = pattern[i];
    if (c == u'\'') quoted = !quoted;
    const bool isLetter = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
    if (!quoted && isLetter && kKnown.find(static_cast<char>(c)) == std::string_view::npos) return false;
  }
  return true;
}

/// Asks ICU for the text of each clock field at every hour, minute and second, so that digits and words of the locale
/// are ICU's own.
bool DateFormatter::learnClockTexts() {
  const auto calendar = makeCalendar();
  calendar->setTimeZone(*icu::TimeZone::getGMT());
  constexpr double kAnyMidnight = 86400000.0 * 18000;
  std::vector<Place> places;
  for (int i = 0; i < 60; ++i) {
    const std::string sample = text(kAnyMidnight + kHour * (i % 24) + kMinute * i + kSecond * i, *calendar, &places);
    if (sample.empty()) return false;
    if (i == 0) fields_.resize(places.size());
    if (places.size() != fields_.size()) return false;
    for (std::size_t f = 0; f < places.size(); ++f) {
      const std::string_view part = std::string_view(sample).substr(places[f].begin, places[f].end - places[f].begin);
      ClockField& field = fields_[f];
      if (i == 0) field.unit = places[f].unit;
      const auto index = static_cast<std::size_t>(field.unit == ClockUnit::kHour ? i % 24 : i);
      ClockText& known = field.texts[index];
      if (part.size() > known.bytes.size() || field.unit != places[f].unit) return false;
      if (known.length != 0 && std::string_view(known.bytes.data(), known.length) != part) return false;
      std::memcpy(known.bytes.data(), part.data(), part.size());
      known.length = static_cast<std::uint8_t>(part.size());
    }
  }
  for (const auto& field : fields_) {
    const std::size_t count = field.unit == ClockUnit::kHour ? 24 : 60;
    for (std::size_t i = 0; i < count; ++i) {
      if (field.texts[i].length == 0) return false;
    }
  }
  return true;
}

}  // namespace chatsum::platform::system
