// One date format: ICU's formatter, and what was learned from it so that the clock can be written without it.
// Immutable once made, so any number of threads may share one.
#pragma once

#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace chatsum::platform::system {

/// The text of one clock field at one time, in sixteen bytes that are copied in one go.
struct ClockText {
  std::array<char, 15> bytes{};
  std::uint8_t length = 0;
};
static_assert(sizeof(ClockText) == 16);

enum class ClockUnit : std::uint8_t { kHour, kMinute, kSecond };

/// One place of a format where a part of the clock stands, with its text for every hour, minute or second.
struct ClockField {
  ClockUnit unit = ClockUnit::kHour;
  std::array<ClockText, 60> texts;
};

class DateFormatter {
 public:
  /// `format` may be null or of a pattern that ICU refuses: then all texts are empty. The zone may be shared with
  /// others.
  DateFormatter(std::unique_ptr<icu::SimpleDateFormat> format, std::shared_ptr<const icu::TimeZone> zone);

  /// ICU's text for a time in milliseconds since 1970. Thin spaces are plain ones. The calendar comes from
  /// `makeCalendar` and belongs to one thread. When `clock` is given it receives the places, in bytes, of the clock
  /// fields in their order.
  struct Place {
    std::size_t begin;
    std::size_t end;
    ClockUnit unit;
  };
  [[nodiscard]] std::string text(double millis, icu::Calendar& calendar, std::vector<Place>* clock = nullptr) const;

  /// A calendar of the format's kind in its zone; nullptr when there is no format.
  [[nodiscard]] std::unique_ptr<icu::Calendar> makeCalendar() const;

  [[nodiscard]] const icu::TimeZone& zone() const { return *zone_; }
  /// True when everything but the clock fields stays the same from one local midnight to the next, and the text of each
  /// clock field is known.
  [[nodiscard]] bool hasClockTexts() const { return known_; }
  [[nodiscard]] const std::vector<ClockField>& clockFields() const { return fields_; }

 private:
  [[nodiscard]] bool changesByDayOnly() const;
  [[nodiscard]] bool learnClockTexts();

  std::unique_ptr<icu::SimpleDateFormat> format_;
  std::shared_ptr<const icu::TimeZone> zone_;
  std::vector<ClockField> fields_;
  bool known_ = false;
};

}  // namespace chatsum::platform::system
