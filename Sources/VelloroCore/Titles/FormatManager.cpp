#include "VelloroCore/Titles/FormatManager.h"

#include "Foundation/Text/String.h"
#include "OxKit/KeptForLocale.h"
#include "OxKit/Localization.h"
#include "OxKit/Numbers.h"
#include "VelloroCore/Titles/TitleTextKeys.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <set>
#include <string_view>

namespace velloro {
namespace {

using Unit = NSMeasurementFormatter::Unit;

constexpr TimeInterval minute = 60;
constexpr TimeInterval hour = 3600;
constexpr TimeInterval lastSeconds = 10;  // which a countdown shows in tenths

/// Makes the formatters of one locale from what sets each apart.
struct Maker {
  Locale locale;

  using Part = NSDateComponentsFormatter::Unit;
  using Width = NSDateComponentsFormatter::UnitsStyle;
  using Zeros = NSDateComponentsFormatter::ZeroFormattingBehavior;

  struct Digits {
    int least = 0;
    int most = 0;
  };

  [[nodiscard]] NSNumberFormatter::Settings digits(
      Digits fraction, NSNumberFormatter::Style style = NSNumberFormatter::Style::decimal) const {
    return {.style = style,
            .locale = locale,
            .minimumIntegerDigits = 1,
            .minimumFractionDigits = fraction.least,
            .maximumFractionDigits = fraction.most,
            .usesGroupingSeparator = true};
  }
  [[nodiscard]] NSNumberFormatter number(Digits fraction) const {
    return NSNumberFormatter(digits(fraction));
  }
  [[nodiscard]] NSNumberFormatter signedNumber(Digits fraction) const {
    return NSNumberFormatter(digits(fraction).withSigns());
  }
  [[nodiscard]] NSNumberFormatter percent(Digits fraction) const {
    return NSNumberFormatter(digits(fraction, NSNumberFormatter::Style::percent));
  }
  [[nodiscard]] NSMeasurementFormatter measurement(Digits fraction) const {
    return NSMeasurementFormatter(
        {.unitStyle = NSMeasurementFormatter::UnitStyle::medium, .number = digits(fraction)});
  }
  [[nodiscard]] NSDateFormatter date(std::string_view fields) const {
    return NSDateFormatter::withTemplate(fields, {.locale = locale});
  }
  [[nodiscard]] NSDateFormatter date(NSDateFormatter::Styles styles) const {
    return NSDateFormatter::withStyles(styles, {.locale = locale});
  }
  [[nodiscard]] NSDateComponentsFormatter duration(const std::set<Part>& parts, Width width,
                                                   Zeros zeros, int mostParts = 0) const {
    return NSDateComponentsFormatter({.locale = locale,
                                      .allowedUnits = parts,
                                      .unitsStyle = width,
                                      .maximumUnitCount = mostParts,
                                      .zeroFormattingBehavior = zeros});
  }
};

/// The one place that says what each formatter is.
FormatManager made(const Locale& locale) {
  using enum Maker::Part;
  using enum Maker::Width;
  using enum Maker::Zeros;
  using DateStyle = NSDateFormatter::Style;
  const Maker make{locale};
  const std::set<Maker::Part> minutesSeconds = {minutes, seconds};
  const std::set<Maker::Part> hoursMinutes = {hours, minutes};
  const std::set<Maker::Part> clock = {hours, minutes, seconds};
  return {
      // clang-format off
      .integerFormatter = make.number({0, 0}),
      .integerDeficitFormatter = make.signedNumber({0, 0}),
      .decimalFormatter = make.number({0, 3}),
      .bloodGlucoseFormatter = make.number({0, 0}),
      .bodyTemperatureFormatter = make.number({0, 2}),
      .taskQuantityVolumeOunces = make.number({0, 0}),
      .taskQuantityVolumeLitres = make.number({1, 2}),
      .taskQuantityVolumeMillilitres = make.number({0, 0}),
      .taskQuantityVolumeCups = make.number({0, 0}),
      .timedTaskCountdownTenths = make.number({1, 1}),

      .voiceoverPercentageFormatter = make.percent({0, 0}),
      .percentageWholeFormatter = make.percent({0, 0}),
      .percentageTenthFormatter = make.percent({1, 1}),
      .percentageBodyFatFormatter = make.percent({1, 2}),

      .taskQuantityTenthFormatter = make.measurement({1, 1}),
      .taskQuantityWholeFormatter = make.measurement({0, 0}),
      .taskQuantityEnergyFormatter = make.measurement({0, 0}),
      .taskQuantityDietaryMassFormatter = make.measurement({0, 1}),
      .waistCircumferenceFormatter = make.measurement({0, 1}),

      .monthNameFormatter = make.date("MMMM"),
      .monthNameAndYearFormatter = make.date("MMMM yyyy"),
      .monthNameShortAndYearFormatter = make.date("MMM yyyy"),
      .timeFormatter = make.date({.time = DateStyle::short_}),
      .dateFormatterMedium = make.date({.date = DateStyle::medium}),
      .dateFormatterLong = make.date({.date = DateStyle::long_}),
      .timerFinishFormatter = make.date("H:mm"),
      .jsonExportDateFormatter = NSDateFormatter::withFormat("yyyy-MM-dd'T'HH:mm:ssZZZZZ", {.locale = Locale::posix()}),

      .timedTaskConfigurationFormatterUnderHourShort = make.duration(minutesSeconds, short_, dropAll, 2),
      .timedTaskConfigurationFormatterUnderHourLong = make.duration(minutesSeconds, full, dropAll, 2),
      .timedTaskConfigurationFormatterOverHour = make.duration(clock, short_, dropLeading, 2),
      .timedTaskConfigurationShortFormatter = make.duration(clock, abbreviated, dropAll),
      .timedTaskNotificationFormatterUnderHour = make.duration(minutesSeconds, full, dropAll, 2),
      .timedTaskNotificationFormatterOverHour = make.duration(hoursMinutes, full, dropLeading, 2),
      .timedTaskComplicationFormatter = make.duration(clock, positional, dropLeading),
      .timedTaskCountdownFormatterOverMinute = make.duration(clock, positional, dropLeading),
      .timedTaskCountdownFormatterUnderMinute = make.duration(minutesSeconds, positional, pad),
      .taskQuantityHoursFormatter = make.duration(hoursMinutes, abbreviated, pad),
      .taskQuantityStandHoursFormatter = make.duration({hours}, abbreviated, pad),
      .sleepDurationHoursFormatter = make.duration({hours}, full, dropAll),
      .sleepDurationFormatter = make.duration(hoursMinutes, short_, dropAll),

      .listFormatter = NSListFormatter({.locale = locale}),
      // clang-format on
  };
}

bool isWholeNumberOf(TimeInterval unit, TimeInterval duration) {
  return std::fmod(duration, unit) == 0;
}

/// "01:30", "1:05:09".
std::string plainClock(TimeInterval duration) {
  constexpr double most = 9e15;  // whole seconds are exact up to here
  const auto seconds = static_cast<long long>(duration > 0 ? std::min(duration, most) : 0);
  if (seconds < 3600) return stringWithFormat("%02lld:%02lld", seconds / 60, seconds % 60);
  return stringWithFormat("%lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

std::string formattedMass(const NSMeasurementFormatter& formatter, double quantity, Unit unit,
                          bool includeUnit) {
  return includeUnit ? formatter.string(quantity, unit)
                     : formatter.numberFormatter().string(quantity);
}

}  // namespace

const FormatManager& FormatManager::shared(const Locale& locale) {
  return keptForLocale<made>(locale);
}

std::optional<std::string> FormatManager::formattedDurationForTimedTaskConfiguration(
    TimeInterval duration) const {
  const TimeInterval exact = wholeUnlessFractional(duration);
  if (exact >= hour) return timedTaskConfigurationFormatterOverHour.string(exact);
  return isWholeNumberOf(minute, exact)
             ? timedTaskConfigurationFormatterUnderHourLong.string(exact)
             : timedTaskConfigurationFormatterUnderHourShort.string(exact);
}

std::optional<std::string> FormatManager::formattedDurationForTimedTaskConfigurationShort(
    TimeInterval duration) const {
  return timedTaskConfigurationShortFormatter.string(duration);
}

std::optional<std::string> FormatManager::formattedDurationForTimedTaskNotification(
    TimeInterval duration) const {
  return wholeUnlessFractional(duration) < hour
             ? timedTaskNotificationFormatterUnderHour.string(duration)
             : timedTaskNotificationFormatterOverHour.string(duration);
}

std::optional<std::string> FormatManager::formattedSleepDuration(TimeInterval duration) const {
  return isWholeNumberOf(hour, wholeUnlessFractional(duration))
             ? sleepDurationHoursFormatter.string(duration)
             : sleepDurationFormatter.string(duration);
}

std::string FormatManager::formattedDurationForTimedTaskCountdown(TimeInterval duration) const {
  const TimeInterval exact = wholeUnlessFractional(duration);
  if (exact < lastSeconds) return timedTaskCountdownTenths.string(exact);
  const auto& formatter = exact < minute ? timedTaskCountdownFormatterUnderMinute
                                         : timedTaskCountdownFormatterOverMinute;
  return formatter.string(exact).value_or(plainClock(exact));
}

std::string FormatManager::formattedDurationForComplication(TimeInterval duration) const {
  return timedTaskComplicationFormatter.string(duration).value_or(plainClock(duration));
}

std::string FormatManager::formattedGrams(double quantity, bool includeUnit) const {
  return formattedMass(taskQuantityDietaryMassFormatter, quantity, Unit::grams, includeUnit);
}

std::string FormatManager::formattedMilligrams(double quantity, bool includeUnit) const {
  return formattedMass(taskQuantityDietaryMassFormatter, quantity, Unit::milligrams, includeUnit);
}

std::string FormatManager::formattedMicrograms(double quantity, bool includeUnit) const {
  const auto number = taskQuantityDietaryMassFormatter.numberFormatter().string(quantity);
  return includeUnit ? localized(title_text::micrograms, {number}) : number;
}

std::string FormatManager::formattedTimeOfDay(const HHMMSS& time) const {
  const auto seconds = static_cast<TimeInterval>(time.intValue());
  return timeFormatter.string(Date::sinceReferenceDate(seconds), TimeZone::gmt());
}

std::string FormatManager::formattedDateRange(Date from, Date to, const TimeZone& timeZone) const {
  const std::string first = dateFormatterMedium.string(from, timeZone);
  const std::string last = dateFormatterMedium.string(to, timeZone);
  return first == last ? first : localized(title_text::dateRange, {first, last});
}

}  // namespace velloro
