#include "Foundation/Formatting/NSDateFormatter.h"

#include "Foundation/Text/IcuSupport.h"
#include "Foundation/Text/String.h"
#include "Foundation/Time/CivilDay.h"

#include <cmath>
#include <functional>
#include <utility>

#include <unicode/gregocal.h>
#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>

namespace platform {
namespace {

using Style = NSDateFormatter::Style;

constexpr double millisecondsTo2001 = Date::timeIntervalBetween1970AndReferenceDate * 1000;

icu::DateFormat::EStyle icuStyle(Style style) {
  switch (style) {
    case Style::none:
      return icu::DateFormat::kNone;
    case Style::short_:
      return icu::DateFormat::kShort;
    case Style::medium:
      return icu::DateFormat::kMedium;
    case Style::long_:
      return icu::DateFormat::kLong;
    case Style::full:
      break;
  }
  return icu::DateFormat::kFull;
}

icu::UnicodeString patternOf(NSDateFormatter::Styles styles, const Locale& locale) {
  if (styles.date == Style::none && styles.time == Style::none) return {};
  const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
      icuStyle(styles.date), icuStyle(styles.time), locale.data().icu));
  const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(format.get());
  if (simple == nullptr) checkIcu(U_MISSING_RESOURCE_ERROR, "cannot load a date style");
  icu::UnicodeString pattern;
  return simple->toPattern(pattern);
}

bool hasZoneField(const icu::UnicodeString& pattern) {
  static const icu::UnicodeString zoneLetters(u"zZOvVXx");
  bool quoted = false;
  for (std::int32_t i = 0; i < pattern.length(); ++i) {
    if (pattern[i] == u'\'') quoted = !quoted;
    if (!quoted && zoneLetters.indexOf(pattern[i]) >= 0) return true;
  }
  return false;
}

/// Milliseconds since 1970, rounded down, but first to the microsecond: most fractions have no
/// exact double, and 0.285 s must not show as 284 ms.
double milliseconds(Date date) {
  constexpr double limit = 1e17;  // a little within ICU's calendar
  const double microseconds = std::round(date.timeIntervalSinceReferenceDate() * 1e6);
  const double result = std::floor(microseconds / 1e3) + millisecondsTo2001;
  if (!(result > -limit)) return -limit;
  return std::min(result, limit);
}

/// A zone that stays at one offset. Without an identifier no name is looked up for it.
std::unique_ptr<icu::TimeZone> fixedZone(std::int64_t offset) {
  return std::make_unique<icu::SimpleTimeZone>(static_cast<std::int32_t>(offset * 1000),
                                               icu::UnicodeString());
}

icu::GregorianCalendar gregorianCalendar(const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  icu::GregorianCalendar calendar(fixedZone(0).release(), locale, status);
  constexpr UDate farPast = -1e17;
  calendar.setGregorianChange(farPast, status);
  checkIcu(status, "cannot make a calendar");
  return calendar;
}

icu::SimpleDateFormat simpleFormat(const icu::UnicodeString& pattern, const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  icu::SimpleDateFormat format(pattern, locale, status);
  format.setLenient(false);
  format.setBooleanAttribute(UDAT_PARSE_PARTIAL_LITERAL_MATCH, false, status);
  format.setBooleanAttribute(UDAT_PARSE_MULTIPLE_PATTERNS_FOR_MATCH, false, status);
  checkIcu(status, "cannot use the date format " + inQuotes(utf8(pattern)));
  return format;
}

/// One pattern with the calendar it fills. ICU's clock changes can be of another year than the
/// system's, so the offset always comes from `TimeZone` and ICU sees fixed zones only.
class PatternFormat {
 public:
  PatternFormat(const icu::UnicodeString& pattern, const icu::Locale& locale)
      : hasZoneField_(hasZoneField(pattern)),
        format_(simpleFormat(pattern, locale)),
        calendar_(gregorianCalendar(locale)) {}

  [[nodiscard]] icu::UnicodeString pattern() const {
    icu::UnicodeString result;
    return format_.toPattern(result);
  }

  icu::UnicodeString string(Date date, const TimeZone& zone) {
    const std::scoped_lock lock(mutex_);
    UErrorCode status = U_ZERO_ERROR;
    setOffset(zone.secondsFromGMT(date));
    calendar_.setLenient(true);
    calendar_.setTime(milliseconds(date), status);
    checkIcu(status, "cannot format a date");
    icu::UnicodeString text;
    icu::FieldPosition ignored;
    return format_.format(calendar_, text, ignored);
  }

  std::optional<Date> date(const icu::UnicodeString& text, const TimeZone& zone) {
    const std::scoped_lock lock(mutex_);
    UErrorCode status = U_ZERO_ERROR;
    setOffset(0);
    calendar_.setLenient(false);
    calendar_.clear();
    icu::ParsePosition position;
    format_.parse(text, calendar_, position);
    const double time = calendar_.getTime(status);
    // Reading an offset leaves its zone in the calendar.
    if (hasZoneField_) offset_.reset();
    if (position.getErrorIndex() >= 0 || position.getIndex() != text.length()) return std::nullopt;
    if (U_FAILURE(status)) return std::nullopt;
    return hasZoneField_ ? instant(time) : instantOnClock(time, zone);
  }

 private:
  void setOffset(std::int64_t offset) {
    if (offset_ == offset) return;
    calendar_.adoptTimeZone(fixedZone(offset).release());
    offset_ = offset;
  }

  static Date instant(double time) {
    return Date::sinceReferenceDate((time - millisecondsTo2001) / 1000);
  }

  static Date instantOnClock(double time, const TimeZone& zone) {
    const auto local = static_cast<std::int64_t>(std::floor(time / 1000));
    const auto shift = static_cast<double>(zone.utcSecondsAt(local) - local);
    return instant(time + shift * 1000);
  }

  bool hasZoneField_;
  icu::SimpleDateFormat format_;
  std::mutex mutex_;  // guards the calendar and the offset its zone has
  icu::GregorianCalendar calendar_;
  std::optional<std::int64_t> offset_ = 0;
};

}  // namespace

struct NSDateFormatter::Implementation {
  Settings settings;
  std::function<icu::UnicodeString()> pattern;
  Lazy<std::unique_ptr<PatternFormat>> format = {};

  [[nodiscard]] PatternFormat& loaded() const {
    return *format.get(
        [this] { return std::make_unique<PatternFormat>(pattern(), settings.locale.data().icu); });
  }
  [[nodiscard]] TimeZone zone() const {
    return settings.timeZone ? *settings.timeZone : TimeZone::current();
  }
};

NSDateFormatter::NSDateFormatter(std::shared_ptr<const Implementation> implementation)
    : implementation_(std::move(implementation)) {}

NSDateFormatter NSDateFormatter::withTemplate(std::string_view fields, Settings settings) {
  auto pattern = [fields = icuText(fields), locale = settings.locale] {
    return locale.data().bestPattern(fields);
  };
  return NSDateFormatter(std::make_shared<const Implementation>(settings, std::move(pattern)));
}

NSDateFormatter NSDateFormatter::withFormat(std::string_view pattern, Settings settings) {
  auto itself = [pattern = icuText(pattern)] { return pattern; };
  return NSDateFormatter(std::make_shared<const Implementation>(settings, std::move(itself)));
}

NSDateFormatter NSDateFormatter::withStyles(Styles styles, Settings settings) {
  auto pattern = [styles, locale = settings.locale] { return patternOf(styles, locale); };
  return NSDateFormatter(std::make_shared<const Implementation>(settings, std::move(pattern)));
}

Locale NSDateFormatter::locale() const {
  return implementation_->settings.locale;
}

std::string NSDateFormatter::string(Date date) const {
  return string(date, implementation_->zone());
}

std::string NSDateFormatter::string(Date date, const TimeZone& zone) const {
  return utf8(implementation_->loaded().string(date, zone));
}

std::optional<Date> NSDateFormatter::date(std::string_view text) const {
  return implementation_->loaded().date(icuText(text), implementation_->zone());
}

const std::vector<std::string>& NSDateFormatter::monthSymbols() const {
  return implementation_->settings.locale.data().dateSymbols().months;
}

const std::vector<std::string>& NSDateFormatter::standaloneMonthSymbols() const {
  return implementation_->settings.locale.data().dateSymbols().standaloneMonths;
}

const std::vector<std::string>& NSDateFormatter::shortMonthSymbols() const {
  return implementation_->settings.locale.data().dateSymbols().shortMonths;
}

const std::vector<std::string>& NSDateFormatter::weekdaySymbols() const {
  return implementation_->settings.locale.data().dateSymbols().weekdays;
}

const std::vector<std::string>& NSDateFormatter::shortWeekdaySymbols() const {
  return implementation_->settings.locale.data().dateSymbols().shortWeekdays;
}

const std::vector<std::string>& NSDateFormatter::veryShortWeekdaySymbols() const {
  return implementation_->settings.locale.data().dateSymbols().veryShortWeekdays;
}

}  // namespace platform
