#include "Foundation/Process/VirtualEnvironment.h"
#include "Support/VisibleText.h"
#include "VelloroCore/Titles/FormatManager.h"

#include <array>
#include <cmath>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Durations = NSDateComponentsFormatter FormatManager::*;
using Numbers = NSNumberFormatter FormatManager::*;
using F = FormatManager;

TEST(FormatManager, WritesDurationsByFormatter) {
  constexpr std::array<double, 6> durations = {0, 59.6, 600, 630, 3600, 36309};
  struct Row {
    Durations formatter;
    std::array<const char*, durations.size()> english;
    std::array<const char*, durations.size()> polish;
  };
  const Row rows[] = {
      // clang-format off
      {&F::timedTaskConfigurationFormatterUnderHourShort,
       {"0 sec", "1 min", "10 min", "10 min, 30 sec", "60 min", "605 min, 9 sec"},
       {"0 sek.", "1 min", "10 min", "10 min i 30 sek.", "60 min", "605 min i 9 sek."}},
      {&F::timedTaskConfigurationFormatterUnderHourLong,
       {"0 seconds", "1 minute", "10 minutes", "10 minutes, 30 seconds", "60 minutes", "605 minutes, 9 seconds"},
       {"0 sekund", "1 minuta", "10 minut", "10 minut i 30 sekund", "60 minut", "605 minut i 9 sekund"}},
      {&F::timedTaskConfigurationFormatterOverHour,
       {"0 sec", "1 min, 0 sec", "10 min, 0 sec", "10 min, 30 sec", "1 hr, 0 min", "10 hr, 5 min"},
       {"0 sek.", "1 min i 0 sek.", "10 min i 0 sek.", "10 min i 30 sek.", "1 godz. i 0 min", "10 godz. i 5 min"}},
      {&F::timedTaskConfigurationShortFormatter,
       {"0s", "1m", "10m", "10m 30s", "1h", "10h 5m 9s"},
       {"0 s", "1 min", "10 min", "10 min i 30 s", "1 h", "10 h, 5 min i 9 s"}},
      {&F::timedTaskNotificationFormatterUnderHour,
       {"0 seconds", "1 minute", "10 minutes", "10 minutes, 30 seconds", "60 minutes", "605 minutes, 9 seconds"},
       {"0 sekund", "1 minuta", "10 minut", "10 minut i 30 sekund", "60 minut", "605 minut i 9 sekund"}},
      {&F::timedTaskNotificationFormatterOverHour,
       {"0 minutes", "1 minute", "10 minutes", "11 minutes", "1 hour, 0 minutes", "10 hours, 5 minutes"},
       {"0 minut", "1 minuta", "10 minut", "11 minut", "1 godzina i 0 minut", "10 godzin i 5 minut"}},
      {&F::timedTaskComplicationFormatter,
       {"0:00", "1:00", "10:00", "10:30", "1:00:00", "10:05:09"},
       {"0:00", "1:00", "10:00", "10:30", "1:00:00", "10:05:09"}},
      {&F::timedTaskCountdownFormatterOverMinute,
       {"0:00", "1:00", "10:00", "10:30", "1:00:00", "10:05:09"},
       {"0:00", "1:00", "10:00", "10:30", "1:00:00", "10:05:09"}},
      {&F::timedTaskCountdownFormatterUnderMinute,
       {"00:00", "01:00", "10:00", "10:30", "60:00", "605:09"},
       {"00:00", "01:00", "10:00", "10:30", "60:00", "605:09"}},
      {&F::taskQuantityHoursFormatter,
       {"0h 0m", "0h 1m", "0h 10m", "0h 11m", "1h 0m", "10h 5m"},
       {"0 h i 0 min", "0 h i 1 min", "0 h i 10 min", "0 h i 11 min", "1 h i 0 min", "10 h i 5 min"}},
      {&F::taskQuantityStandHoursFormatter,
       {"0h", "0h", "0h", "0h", "1h", "10h"},
       {"0 h", "0 h", "0 h", "0 h", "1 h", "10 h"}},
      {&F::sleepDurationHoursFormatter,
       {"0 hours", "0 hours", "0 hours", "0 hours", "1 hour", "10 hours"},
       {"0 godzin", "0 godzin", "0 godzin", "0 godzin", "1 godzina", "10 godzin"}},
      {&F::sleepDurationFormatter,
       {"0 min", "1 min", "10 min", "11 min", "1 hr", "10 hr, 5 min"},
       {"0 min", "1 min", "10 min", "11 min", "1 godz.", "10 godz. i 5 min"}},
      // clang-format on
  };
  for (const Row& row : rows) {
    for (const auto& [name, texts] : {std::pair("en_US", row.english), {"pl_PL", row.polish}}) {
      const auto& formatter = FormatManager::shared(Locale::fromIdentifier(name)).*row.formatter;
      for (std::size_t i = 0; i < durations.size(); ++i) {
        EXPECT_EQ(visible(formatter.string(durations[i]).value()), texts[i])
            << name << ", " << durations[i] << " s, row " << &row - rows;
      }
    }
  }
}

TEST(FormatManager, WritesNumbersByFormatter) {
  const std::tuple<Numbers, double, const char*, const char*> rows[] = {
      {&F::integerFormatter, 12345.5, "12,346", "12.346"},
      {&F::integerDeficitFormatter, 1500, "+1,500", "+1.500"},
      {&F::integerDeficitFormatter, -500, "-500", "-500"},
      {&F::integerDeficitFormatter, 0, "+0", "+0"},
      {&F::decimalFormatter, 1234.5678, "1,234.568", "1.234,568"},
      {&F::bloodGlucoseFormatter, 0.4, "0", "0"},
      {&F::bodyTemperatureFormatter, 36.6, "36.6", "36,6"},
      {&F::taskQuantityVolumeOunces, 63.5, "64", "64"},
      {&F::taskQuantityVolumeLitres, 2, "2.0", "2,0"},
      {&F::taskQuantityVolumeLitres, 0.255, "0.26", "0,26"},
      {&F::taskQuantityVolumeMillilitres, 1250, "1,250", "1.250"},
      {&F::taskQuantityVolumeCups, 8, "8", "8"},
      {&F::timedTaskCountdownTenths, 9.5, "9.5", "9,5"},
      {&F::voiceoverPercentageFormatter, 0.29, "29%", "29 %"},
      {&F::percentageWholeFormatter, 1.15, "115%", "115 %"},
      {&F::percentageTenthFormatter, 0.29, "29.0%", "29,0 %"},
      {&F::percentageBodyFatFormatter, 0.20125, "20.12%", "20,12 %"}};
  for (const auto& [formatter, number, english, german] : rows) {
    for (const auto& [name, text] : {std::pair("en_US", english), {"de_DE", german}}) {
      const auto& own = FormatManager::shared(Locale::fromIdentifier(name)).*formatter;
      EXPECT_EQ(visible(own.string(number)), text);
    }
  }
}

TEST(FormatManager, WritesDatesInTheirZone) {
  VirtualEnvironment environment;
  const FormatManager& formats = FormatManager::shared(Locale::fromIdentifier("en_US"));
  const auto date = Date::fromISO8601("2024-03-07T23:05:09Z").value();
  const auto zone = TimeZone::fromIdentifier("Asia/Kathmandu").value();
  const std::pair<NSDateFormatter, const char*> rows[] = {
      {formats.monthNameFormatter, "March"},
      {formats.monthNameAndYearFormatter, "March 2024"},
      {formats.monthNameShortAndYearFormatter, "Mar 2024"},
      {formats.timeFormatter, "4:50 AM"},
      {formats.dateFormatterMedium, "Mar 8, 2024"},
      {formats.dateFormatterLong, "March 8, 2024"},
      {formats.timerFinishFormatter, "04:50"},
      {formats.jsonExportDateFormatter, "2024-03-08T04:50:09+05:45"}};
  for (const auto& [formatter, text] : rows) {
    EXPECT_EQ(visible(formatter.string(date, zone)), text);
  }
  EXPECT_EQ(formats.formattedDateRange(date, date + 86400, zone), "Mar 8, 2024 – Mar 9, 2024");
  EXPECT_EQ(formats.formattedDateRange(date, date + 3600, zone), "Mar 8, 2024");
  EXPECT_EQ(visible(formats.formattedTimeOfDay({.h = 22})), "10:00 PM");
}

TEST(FormatManager, ChoosesTheFormatterOfAnAmount) {
  VirtualEnvironment environment;
  const FormatManager& formats = FormatManager::shared(Locale::fromIdentifier("en_US"));
  const std::tuple<double, const char*, const char*, const char*, const char*> rows[] = {
      // duration, configuration, notification, countdown, sleep
      {0, "0 seconds", "0 seconds", "0.0", "0 hours"},
      {9.5, "10 sec", "10 seconds", "9.5", "0 min"},
      {100 * 0.1, "10 sec", "10 seconds", "00:10", "0 min"},
      {59, "59 sec", "59 seconds", "00:59", "1 min"},
      {60, "1 minute", "1 minute", "1:00", "1 min"},
      {600, "10 minutes", "10 minutes", "10:00", "10 min"},
      {630, "10 min, 30 sec", "10 minutes, 30 seconds", "10:30", "11 min"},
      {3599, "59 min, 59 sec", "59 minutes, 59 seconds", "59:59", "1 hr"},
      {3600, "1 hr, 0 min", "1 hour, 0 minutes", "1:00:00", "1 hour"},
      {7.7 * 3600, "7 hr, 42 min", "7 hours, 42 minutes", "7:42:00", "7 hr, 42 min"}};
  for (const auto& [duration, configuration, notification, countdown, sleep] : rows) {
    EXPECT_EQ(formats.formattedDurationForTimedTaskConfiguration(duration), configuration);
    EXPECT_EQ(formats.formattedDurationForTimedTaskNotification(duration), notification);
    EXPECT_EQ(formats.formattedDurationForTimedTaskCountdown(duration), countdown);
    EXPECT_EQ(formats.formattedSleepDuration(duration), sleep);
  }
  EXPECT_EQ(formats.formattedDurationForTimedTaskConfigurationShort(3909), "1h 5m 9s");
  EXPECT_EQ(formats.formattedDurationForComplication(9), "0:09");
  EXPECT_EQ(formats.formattedDurationForTimedTaskCountdown(3.6e15), "1000000000000:00:00");
  EXPECT_EQ(formats.formattedDurationForTimedTaskCountdown(std::nan("")), "00:00");
  EXPECT_EQ(formats.formattedDurationForComplication(std::nan("")), "00:00");
  EXPECT_FALSE(formats.formattedDurationForTimedTaskConfiguration(std::nan("")));
  EXPECT_FALSE(formats.formattedSleepDuration(3.6e15));
  EXPECT_EQ(formats.formattedGrams(40, true), "40 g");
  EXPECT_EQ(formats.formattedGrams(1234.56, false), "1,234.6");
  EXPECT_EQ(formats.formattedMilligrams(1.3, true), "1.3 mg");
  EXPECT_EQ(formats.formattedMicrograms(2.4, true), "2.4 mcg");
  EXPECT_EQ(formats.formattedMicrograms(2.4, false), "2.4");
}

}  // namespace
}  // namespace velloro
