// Writes dates in one format and asks ICU only when the day changes. One thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/interfaces/DateFormatting.h"
#include "platform/system/dates/DateFormatter.h"

namespace chatsum::platform::system {

/// Milliseconds since 1970, whole ones, inside what ICU can tell; not a number for a date that is none.
[[nodiscard]] double wholeMillis(Date date);

/// The offsets of a zone from UTC, with the time ranges that have them.
class ZoneOffset {
 public:
  /// [start, end) and the offset it has, in milliseconds.
  struct Range {
    double start;
    double end;
    double offset;
  };
  explicit ZoneOffset(const icu::TimeZone& zone) : zone_(zone) {}
  /// The range around an instant; just that instant when the zone does not tell when it changes.
  const Range& at(double millis);

 private:
  [[nodiscard]] double offset(double millis) const;
  [[nodiscard]] Range find(double millis) const;

  const icu::TimeZone& zone_;
  std::vector<Range> known_;  // finding one costs as much as three dates
  Range last_{0, 0, 0};
};

/// Between two midnights, or changes of the zone's offset, only the clock fields of a text change: the rest is kept and
/// they are filled in. What this cannot hold for is written by ICU each time.
class DayText final : public DateText {
 public:
  explicit DayText(std::shared_ptr<const DateFormatter> formatter);
  void append(Date date, TextBuffer& text) override;

 private:
  /// The text between two clock fields, with the clock field before it.
  struct Piece {
    const ClockField* field;  // nullptr for the first piece
    std::uint32_t begin;
    std::uint32_t length;
  };

  void appendOther(double millis, TextBuffer& text);
  /// Prepares the day of an instant; false when its text cannot be taken apart.
  [[nodiscard]] bool prepareDay(double millis);
  void appendClock(double millis, TextBuffer& text) const;

  std::shared_ptr<const DateFormatter> formatter_;
  std::unique_ptr<icu::Calendar> calendar_;
  ZoneOffset offset_;
  double start_ = 0;  // the prepared range [start, end)
  double end_ = 0;
  std::int64_t midnight_ = 0;  // of the local day, as an instant at the range's offset
  std::string fixed_;          // the pieces' texts, each padded so that sixteen bytes may be read
  std::vector<Piece> pieces_;
  std::size_t longest_ = 0;
  std::vector<DateFormatter::Place> places_;
};

}  // namespace chatsum::platform::system
