#include "platform/system/dates/DayText.h"

#include <unicode/basictz.h>
#include <unicode/tztrans.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace chatsum::platform::system {
namespace {

constexpr double kDay = 86400000;
// ICU's calendars end some five million years from now in either direction.
constexpr double kFirst = -184303902528000000.0 + kDay;
constexpr double kLast = 183882168921600000.0 - kDay;
// Far away nothing is kept: zones count their changes in integers that do not reach the calendar's ends.
constexpr double kFar = 1e14;
constexpr std::size_t kCopied = 16;

/// Copies sixteen bytes, of which `length` are meant: a fixed count is a single load and store.
char* copyShort(char* to, const char* from) {
  std::memcpy(to, from, kCopied);
  return to;
}

}  // namespace

double wholeMillis(Date date) {
  const double millis = std::floor(date.secondsSince1970 * 1000);
  return std::isnan(millis) ? millis : std::clamp(millis, kFirst, kLast);
}

double ZoneOffset::offset(double millis) const {
  std::int32_t raw = 0;
  std::int32_t summer = 0;
  UErrorCode status = U_ZERO_ERROR;
  zone_.getOffset(millis, false, raw, summer, status);
  return U_SUCCESS(status) ? static_cast<double>(raw) + static_cast<double>(summer) : 0;
}

const ZoneOffset::Range& ZoneOffset::at(double millis) {
  constexpr std::size_t kMost = 256;
  const auto holds = [&](const Range& range) { return range.start <= millis && millis < range.end; };
  if (holds(last_)) return last_;
  const auto known = std::find_if(known_.begin(), known_.end(), holds);
  if (known != known_.end()) {
    last_ = *known;
  } else {
    last_ = find(millis);
    if (known_.size() >= kMost) known_.clear();
    known_.push_back(last_);
  }
  return last_;
}

ZoneOffset::Range ZoneOffset::find(double millis) const {
  const double here = offset(millis);
  const Range instant{millis, millis + 1, here};
  const auto* zone = dynamic_cast<const icu::BasicTimeZone*>(&zone_);
  if (!zone || std::abs(millis) > kFar) return instant;
  icu::TimeZoneTransition change;
  const double start = zone->getPreviousTransition(millis, true, change) ? change.getTime() : -kFar;
  const double end = zone->getNextTransition(millis, false, change) ? change.getTime() : kFar;
  // The zone's word is checked at both ends before it is relied upon.
  if (!(start <= millis && millis < end) || offset(start) != here || offset(end - 1) != here) return instant;
  return {start, end, here};
}

DayText::DayText(std::shared_ptr<const DateFormatter> formatter)
    : formatter_(std::move(formatter)), calendar_(formatter_->makeCalendar()), offset_(formatter_->zone()) {}

void DayText::append(Date date, TextBuffer& text) {
  // The range has whole milliseconds at both ends, so rounding need not come before the comparison.
  const double millis = date.secondsSince1970 * 1000;
  if (millis >= start_ && millis < end_) {
    appendClock(millis, text);
  } else {
    appendOther(wholeMillis(date), text);
  }
}

void DayText::appendOther(double millis, TextBuffer& text) {
  if (!calendar_ || std::isnan(millis)) return;
  if (formatter_->hasClockTexts() && std::abs(millis) < kFar && prepareDay(millis)) {
    appendClock(millis, text);
  } else {
    text.append(formatter_->text(millis, *calendar_));
  }
}

bool DayText::prepareDay(double millis) {
  start_ = end_ = 0;
  const ZoneOffset::Range& range = offset_.at(millis);
  const double midnight = std::floor((millis + range.offset) / kDay) * kDay - range.offset;
  const std::string whole = formatter_->text(millis, *calendar_, &places_);
  const auto& fields = formatter_->clockFields();
  if (whole.empty() || places_.size() != fields.size()) return false;

  fixed_.clear();
  pieces_.clear();
  longest_ = kCopied;
  std::size_t done = 0;
  const auto addPiece = [&](const ClockField* field, std::size_t end) {
    pieces_.push_back({field, static_cast<std::uint32_t>(fixed_.size()), static_cast<std::uint32_t>(end - done)});
    longest_ += kCopied + (end - done);
    fixed_.append(whole, done, end - done).append(kCopied, '\0');
  };
  for (std::size_t i = 0; i < fields.size(); ++i) {
    addPiece(i == 0 ? nullptr : &fields[i - 1], places_[i].begin);
    done = places_[i].end;
  }
  addPiece(fields.empty() ? nullptr : &fields.back(), whole.size());
  midnight_ = static_cast<std::int64_t>(midnight);

  // Filled in by hand, this instant must read as ICU wrote it.
  TextBuffer again;
  appendClock(millis, again);
  if (again.view() != whole) return false;
  start_ = std::max(midnight, range.start);
  end_ = std::min(midnight + kDay, range.end);
  return true;
}

void DayText::appendClock(double millis, TextBuffer& text) const {
  auto whole = static_cast<std::int64_t>(millis);
  if (static_cast<double>(whole) > millis) --whole;  // floor, without a call into the mathematics library
  const auto inDay = static_cast<std::uint32_t>(whole - midnight_);
  const std::array<std::uint32_t, 3> now{inDay / 3600000, inDay / 60000 % 60, inDay / 1000 % 60};
  char* const begin = text.room(longest_);
  char* to = begin;
  for (const Piece& piece : pieces_) {
    if (piece.field) {
      const ClockText& part = piece.field->texts[now[static_cast<std::size_t>(piece.field->unit)]];
      to = copyShort(to, part.bytes.data()) + part.length;
    }
    const char* const from = fixed_.data() + piece.begin;
    if (piece.length <= kCopied) {
      to = copyShort(to, from) + piece.length;
    } else {
      std::memcpy(to, from, piece.length);
      to += piece.length;
    }
  }
  text.advance(static_cast<std::size_t>(to - begin));
}

}  // namespace chatsum::platform::system
