#pragma once

#include "VelloroCore/Frequency/TaskFrequencyPeriod.h"

namespace velloro {

/// A period with one of its days picked out.
///
///     const auto week = DatedPeriod::fromDate({2024, 3, 6}, TaskFrequencyPeriodType::week,
///                                             DayOfWeek::sunday, {});
///     week.periodProgressAtEndOfToday({});    // 4.0 / 7: Sunday to Wednesday have gone
struct DatedPeriod {
  YYYYMMDD date = {};
  TaskFrequencyPeriod period = {};

  /// The period of that type that holds the date.
  [[nodiscard]] static DatedPeriod fromDate(YYYYMMDD date, TaskFrequencyPeriodType periodType,
                                            DayOfWeek firstDayOfWeek, const CountedIn& timeZone) {
    return {.date = date,
            .period = TaskFrequencyPeriod::fromDate(periodType, date, firstDayOfWeek, timeZone)};
  }

  bool operator==(const DatedPeriod&) const = default;
  static constexpr auto codingKeys =
      keys(key("date", &DatedPeriod::date), key("period", &DatedPeriod::period));

  [[nodiscard]] bool isLastDay() const { return date == period.finishDate; }
  /// The share of the period, 0 to 1, that has gone when the date ends: 0 for a date before the
  /// period, 1 for one behind it.
  [[nodiscard]] double periodProgressAtEndOfToday(const CountedIn& timeZone) const;
};

}  // namespace velloro
