#pragma once

#include "Foundation/Formatting/NSDateComponentsFormatter.h"
#include "Foundation/Formatting/NSDateFormatter.h"
#include "Foundation/Formatting/NSListFormatter.h"
#include "Foundation/Formatting/NSMeasurementFormatter.h"
#include "Foundation/Formatting/NSNumberFormatter.h"
#include "OxDateTime/HHMMSS.h"

#include <optional>
#include <string>

namespace velloro {

/// The formatters for what the program shows: one set for each locale, made at first use and kept
/// for the life of the process; each formatter loads what it needs when it first writes something.
/// Safe from any thread.
///
///     const FormatManager& formats = FormatManager::shared(locale);
///     formats.integerFormatter.string(1234);                     // "1,234"
///     formats.integerDeficitFormatter.string(500);               // "+500"
///     formats.timeFormatter.string(now, berlin);                 // "1:00\u202FPM"
///     formats.formattedDurationForTimedTaskConfiguration(630);   // "10 min, 30 sec"
///
/// An amount's digits behind the decimal mark are "least-most" in the comments below.
struct FormatManager {
  [[nodiscard]] static const FormatManager& shared(const Locale& locale);

  // Numbers.
  NSNumberFormatter integerFormatter;
  NSNumberFormatter integerDeficitFormatter;        ///< With a sign in front of every number.
  NSNumberFormatter decimalFormatter;               ///< 0-3
  NSNumberFormatter bloodGlucoseFormatter;          ///< 0
  NSNumberFormatter bodyTemperatureFormatter;       ///< 0-2
  NSNumberFormatter taskQuantityVolumeOunces;       ///< 0
  NSNumberFormatter taskQuantityVolumeLitres;       ///< 1-2
  NSNumberFormatter taskQuantityVolumeMillilitres;  ///< 0
  NSNumberFormatter taskQuantityVolumeCups;         ///< 0
  NSNumberFormatter timedTaskCountdownTenths;       ///< 1: the last seconds, "9.5"

  // Shares of 1.
  NSNumberFormatter voiceoverPercentageFormatter;  ///< 0
  NSNumberFormatter percentageWholeFormatter;      ///< 0
  NSNumberFormatter percentageTenthFormatter;      ///< 1
  NSNumberFormatter percentageBodyFatFormatter;    ///< 1-2

  // Amounts with their unit; for the number alone, their `numberFormatter`.
  NSMeasurementFormatter taskQuantityTenthFormatter;        ///< 1
  NSMeasurementFormatter taskQuantityWholeFormatter;        ///< 0
  NSMeasurementFormatter taskQuantityEnergyFormatter;       ///< 0
  NSMeasurementFormatter taskQuantityDietaryMassFormatter;  ///< 0-1
  NSMeasurementFormatter waistCircumferenceFormatter;       ///< 0-1

  // Dates, to be written in the zone that is given with them.
  NSDateFormatter monthNameFormatter;              ///< "March"
  NSDateFormatter monthNameAndYearFormatter;       ///< "March 2024"
  NSDateFormatter monthNameShortAndYearFormatter;  ///< "Mar 2024"
  NSDateFormatter timeFormatter;                   ///< "2:30 PM"
  NSDateFormatter dateFormatterMedium;             ///< "Mar 7, 2024"
  NSDateFormatter dateFormatterLong;               ///< "March 7, 2024"
  NSDateFormatter timerFinishFormatter;            ///< "14:30", whatever the locale's clock
  NSDateFormatter jsonExportDateFormatter;         ///< "2024-03-07T14:30:00+01:00" everywhere

  // Durations in seconds; what is shown of 10 min 30 s.
  NSDateComponentsFormatter timedTaskConfigurationFormatterUnderHourShort;  ///< "10 min, 30 sec"
  NSDateComponentsFormatter timedTaskConfigurationFormatterUnderHourLong;  ///< "10 minutes, 30 …"
  NSDateComponentsFormatter timedTaskConfigurationFormatterOverHour;       ///< "10 min, 30 sec"
  NSDateComponentsFormatter timedTaskConfigurationShortFormatter;          ///< "10m 30s"
  NSDateComponentsFormatter timedTaskNotificationFormatterUnderHour;       ///< "10 minutes, 30 …"
  NSDateComponentsFormatter timedTaskNotificationFormatterOverHour;        ///< "11 minutes"
  NSDateComponentsFormatter timedTaskComplicationFormatter;                ///< "10:30"
  NSDateComponentsFormatter timedTaskCountdownFormatterOverMinute;         ///< "10:30"
  NSDateComponentsFormatter timedTaskCountdownFormatterUnderMinute;        ///< "10:30", "00:09"
  NSDateComponentsFormatter taskQuantityHoursFormatter;                    ///< "0h 11m"
  NSDateComponentsFormatter taskQuantityStandHoursFormatter;               ///< "0h"
  NSDateComponentsFormatter sleepDurationHoursFormatter;                   ///< "0 hours"
  NSDateComponentsFormatter sleepDurationFormatter;                        ///< "11 min"

  NSListFormatter listFormatter;  ///< "yoga, rowing, and golf"

  // The texts of durations in seconds, each by the formatters of its name. Absent for what is no
  // duration: not a number, or beyond ten million years.

  /// "10 minutes", "10 min, 30 sec", "1 hr, 0 min".
  [[nodiscard]] std::optional<std::string> formattedDurationForTimedTaskConfiguration(
      TimeInterval duration) const;
  /// "10m 30s"
  [[nodiscard]] std::optional<std::string> formattedDurationForTimedTaskConfigurationShort(
      TimeInterval duration) const;
  /// "10 minutes, 30 seconds", "1 hour, 5 minutes".
  [[nodiscard]] std::optional<std::string> formattedDurationForTimedTaskNotification(
      TimeInterval duration) const;
  /// "7 hours", "7 hr, 30 min".
  [[nodiscard]] std::optional<std::string> formattedSleepDuration(TimeInterval duration) const;

  // Clocks, which always show something: plain digits where their formatter gives nothing.

  /// "9.5", "00:10", "1:30", "1:05:09".
  [[nodiscard]] std::string formattedDurationForTimedTaskCountdown(TimeInterval duration) const;
  /// "0:09", "1:30", "1:05:09".
  [[nodiscard]] std::string formattedDurationForComplication(TimeInterval duration) const;

  // "40 g", "2.4 mcg"; without the unit "40", "2.4".
  [[nodiscard]] std::string formattedGrams(double quantity, bool includeUnit) const;
  [[nodiscard]] std::string formattedMilligrams(double quantity, bool includeUnit) const;
  [[nodiscard]] std::string formattedMicrograms(double quantity, bool includeUnit) const;

  /// "10:00 PM"
  [[nodiscard]] std::string formattedTimeOfDay(const HHMMSS& time) const;
  /// "Mar 7, 2024 – Mar 9, 2024"; one date where both are on one day of the zone.
  [[nodiscard]] std::string formattedDateRange(Date from, Date to, const TimeZone& timeZone) const;
};

}  // namespace velloro
