#include "platform/system/dates/SystemDateFormatting.h"

#include <unicode/basictz.h>
#include <unicode/datefmt.h>
#include <unicode/smpdtfmt.h>
#include <unicode/tztrans.h>

#include <map>
#include <mutex>

#include "platform/system/dates/DateEnvironment.h"
#include "platform/system/dates/DayText.h"
#include "platform/system/dates/RelativeDayText.h"

namespace chatsum::platform::system {
namespace {

icu::DateFormat::EStyle icuStyle(DateStyle style) {
  switch (style) {
    case DateStyle::kNone:
      break;
    case DateStyle::kShort:
      return icu::DateFormat::kShort;
    case DateStyle::kMedium:
      return icu::DateFormat::kMedium;
    case DateStyle::kLong:
      return icu::DateFormat::kLong;
    case DateStyle::kFull:
      return icu::DateFormat::kFull;
  }
  return icu::DateFormat::kNone;
}

/// nullptr when the object is of another kind.
std::unique_ptr<icu::SimpleDateFormat> simple(std::unique_ptr<icu::DateFormat> format) {
  auto* result = dynamic_cast<icu::SimpleDateFormat*>(format.get());
  if (result) (void)format.release();
  return std::unique_ptr<icu::SimpleDateFormat>(result);
}

}  // namespace

/// Locale, zone, and the formatters made so far: making one costs up to some milliseconds.
class SystemDateFormatting::Formatters {
 public:
  explicit Formatters(const DateSettings& settings)
      : locale_(settings.locale.empty() ? localeFromEnvironment() : localeNamed(settings.locale)),
        zone_(settings.zone.empty() ? zoneFromEnvironment() : zoneNamed(settings.zone)) {
    // A zone works its changes out at the first question; here that happens before any other thread sees it.
    icu::TimeZoneTransition change;
    if (const auto* zone = dynamic_cast<const icu::BasicTimeZone*>(zone_.get()))
      zone->getNextTransition(0, false, change);
  }

  [[nodiscard]] const icu::Locale& locale() const { return locale_; }

  std::shared_ptr<const DateFormatter> withPattern(std::string_view pattern) {
    return remembered("p" + std::string(pattern), [&] {
      UErrorCode status = U_ZERO_ERROR;
      const icu::StringPiece bytes(pattern.data(), static_cast<std::int32_t>(pattern.size()));
      auto format = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString::fromUTF8(bytes), locale_, status);
      if (U_FAILURE(status)) format.reset();
      return format;
    });
  }

  std::shared_ptr<const DateFormatter> withStyles(DateStyle date, DateStyle time) {
    const std::string key{'s', static_cast<char>('0' + static_cast<int>(date)),
                          static_cast<char>('0' + static_cast<int>(time))};
    return remembered(key, [&]() -> std::unique_ptr<icu::SimpleDateFormat> {
      if (date == DateStyle::kNone && time == DateStyle::kNone) return nullptr;
      return simple(std::unique_ptr<icu::DateFormat>(
          icu::DateFormat::createDateTimeInstance(icuStyle(date), icuStyle(time), locale_)));
    });
  }

 private:
  template <class Make>
  std::shared_ptr<const DateFormatter> remembered(const std::string& key, const Make& make) {
    constexpr std::size_t kMost = 64;  // patterns may come from a settings file or a command line, without end
    const std::lock_guard lock(mutex_);
    if (const auto found = formatters_.find(key); found != formatters_.end()) return found->second;
    if (formatters_.size() >= kMost) formatters_.clear();
    auto formatter = std::make_shared<const DateFormatter>(make(), zone_);
    formatters_.emplace(key, formatter);
    return formatter;
  }

  icu::Locale locale_;
  std::shared_ptr<const icu::TimeZone> zone_;
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<const DateFormatter>> formatters_;
};

struct SystemDateFormatting::Once {
  std::once_flag flag;
};

SystemDateFormatting::SystemDateFormatting(const Clock& clock, DateSettings settings)
    : clock_(clock), settings_(std::move(settings)), once_(std::make_unique<Once>()) {}

SystemDateFormatting::~SystemDateFormatting() = default;

SystemDateFormatting::Formatters& SystemDateFormatting::formatters() const {
  std::call_once(once_->flag, [this] { formatters_ = std::make_unique<Formatters>(settings_); });
  return *formatters_;
}

std::unique_ptr<DateText> SystemDateFormatting::withPattern(std::string_view pattern) const {
  return std::make_unique<DayText>(formatters().withPattern(pattern));
}

std::unique_ptr<DateText> SystemDateFormatting::withStyles(DateStyle date, DateStyle time, bool relative) const {
  auto absolute = formatters().withStyles(date, time);
  if (!relative || date == DateStyle::kNone) return std::make_unique<DayText>(std::move(absolute));
  auto clock = time == DateStyle::kNone ? nullptr : formatters().withStyles(DateStyle::kNone, time);
  return std::make_unique<RelativeDayText>(formatters().locale(), std::move(absolute), std::move(clock), clock_);
}

}  // namespace chatsum::platform::system
