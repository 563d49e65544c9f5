#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Values/Hasher.h"
#include "OxDateTime/StandIns.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <vector>

namespace velloro {

struct DatedPeriod;

/// The stretch of days in which a task is measured, both ends in it.
///
///     const auto week = TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType::week,
///                                                     {2024, 3, 6}, DayOfWeek::sunday, {});
///     week.startDate;              // 20240303: to 20240309
///     week.add(-1, {}).startDate;      // 20240225
///     week.remainingDays({2024, 3, 6}, /*includeThisDay=*/false, {});   // 3
///
/// Two periods of the same days are equal, whatever their types: of a day in a month of one. A
/// function that counts days takes the zone in which it counts them, as `YYYYMMDD` does.
struct TaskFrequencyPeriod {
  TaskFrequencyPeriodType periodType = TaskFrequencyPeriodType::day;
  YYYYMMDD startDate = {};
  YYYYMMDD finishDate = {};
  DayOfWeek firstDayOfWeek = DayOfWeek::sunday;  ///< On which weeks and fortnights begin.

  /// The period of that type that holds the date.
  ///
  /// Fortnights are counted from Saturday 2000-01-01, in the phase of the date itself. So with
  /// another first day of the week than Saturday, the fortnights of neighbouring dates can overlap:
  /// with Sunday first, 2000-01-08 lies in that from 1999-12-26 and 2000-01-09 in that from
  /// 2000-01-02.
  [[nodiscard]] static TaskFrequencyPeriod fromDate(TaskFrequencyPeriodType periodType,
                                                    YYYYMMDD date, DayOfWeek firstDayOfWeek,
                                                    const CountedIn& timeZone);

  // The type is left out of both; periods are ordered by their first day, then by
  // `firstDayOfWeek`.
  bool operator==(const TaskFrequencyPeriod& other) const {
    return startDate == other.startDate && finishDate == other.finishDate &&
           firstDayOfWeek == other.firstDayOfWeek;
  }
  std::weak_ordering operator<=>(const TaskFrequencyPeriod& other) const;
  void hash(Hasher& hasher) const { hasher.combine(startDate, finishDate, firstDayOfWeek); }

  static constexpr auto codingKeys =
      keys(key("periodType", &TaskFrequencyPeriod::periodType, initialWhenUnknown),
           key("startDate", &TaskFrequencyPeriod::startDate),
           key("finishDate", &TaskFrequencyPeriod::finishDate),
           key("firstDayOfWeek", &TaskFrequencyPeriod::firstDayOfWeek,
               whenUnknown(&firstDayOfWeekStandIn)));

  [[nodiscard]] bool contains(YYYYMMDD date) const {
    return startDate <= date && date <= finishDate;
  }
  /// Whether at least one day of the month lies in the period.
  [[nodiscard]] bool contains(YYYYMM month) const;
  [[nodiscard]] bool endsBefore(YYYYMMDD date) const { return finishDate < date; }
  [[nodiscard]] bool startsAfter(YYYYMMDD date) const { return startDate > date; }
  /// Whether today's logical day lies in the period.
  [[nodiscard]] bool isCurrentPeriod(HHMMSS startOfDay, TimeZone timeZone, Date now) const;

  [[nodiscard]] std::int64_t numberOfDays(const CountedIn& timeZone) const;
  /// Days from a date to the last one: all of them for a date before the period, 0 behind it.
  [[nodiscard]] std::int64_t remainingDays(YYYYMMDD from, bool includeThisDay,
                                           const CountedIn& timeZone) const;

  /// The period of the same type that holds the day behind the last one, or before the first one.
  [[nodiscard]] TaskFrequencyPeriod next(const CountedIn& timeZone) const;
  [[nodiscard]] TaskFrequencyPeriod previous(const CountedIn& timeZone) const;
  /// That many times `next`, or, below 0, `previous`.
  [[nodiscard]] TaskFrequencyPeriod add(std::int64_t numPeriods, const CountedIn& timeZone) const;

  /// The period with today's logical day, or, when that lies outside, with the nearest day in it.
  [[nodiscard]] DatedPeriod latestPossibleDatedPeriod(HHMMSS startOfDay, TimeZone timeZone,
                                                      Date now) const;

  // How many days of the period lie in the month of its first day, and in that of its last day.
  [[nodiscard]] std::int64_t numberOfDaysInStartingMonth() const;
  [[nodiscard]] std::int64_t numberOfDaysInFinishMonth() const;
  // The first and the last day of the period that lie in a month; absent when none does.
  [[nodiscard]] std::optional<YYYYMMDD> firstDayInMonth(YYYYMM month) const;
  [[nodiscard]] std::optional<YYYYMMDD> lastDayInMonth(YYYYMM month) const;
};

// By the first day, then by the last one.
[[nodiscard]] std::vector<TaskFrequencyPeriod> sortedOldestToNewest(
    std::vector<TaskFrequencyPeriod> periods);
[[nodiscard]] std::vector<TaskFrequencyPeriod> sortedNewestToOldest(
    std::vector<TaskFrequencyPeriod> periods);

}  // namespace velloro
