#pragma once

#include "Foundation/Coding/RawValue.h"
#include "Foundation/Time/TimeZone.h"
#include "OxCheckableTasks/Icons/IconManagerIcon.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace velloro {

/// The kinds of period, from the shortest on: `day < week`.
enum class TaskFrequencyPeriodType : std::int8_t { day, week, fortnight, month, year };

constexpr auto rawValues(std::type_identity<TaskFrequencyPeriodType>) {
  using enum TaskFrequencyPeriodType;
  return rawTexts<TaskFrequencyPeriodType>(
      {{day, "d"}, {week, "w"}, {fortnight, "f"}, {month, "m"}, {year, "y"}});
}

// The first and the last day of the period of this type that holds a date; see
// `TaskFrequencyPeriod::fromDate`.
[[nodiscard]] YYYYMMDD firstDate(TaskFrequencyPeriodType type, YYYYMMDD date,
                                 DayOfWeek firstDayOfWeek, const CountedIn& timeZone);
[[nodiscard]] YYYYMMDD lastDate(TaskFrequencyPeriodType type, YYYYMMDD date,
                                DayOfWeek firstDayOfWeek, const CountedIn& timeZone);

/// The length of a period in days, for choosing an icon.
enum class MultiDayCount : std::int8_t {
  duration1,
  duration7,
  duration14,
  duration28,
  duration29,
  duration30,
  duration31,
  duration365,
  duration366,
};

struct MultiDayCountRow {
  MultiDayCount value;
  std::string_view raw;
  std::int64_t numDays;
};

inline constexpr MultiDayCountRow multiDayCountRows[] = {
    {MultiDayCount::duration1, "d1", 1},       {MultiDayCount::duration7, "d7", 7},
    {MultiDayCount::duration14, "d14", 14},    {MultiDayCount::duration28, "d28", 28},
    {MultiDayCount::duration29, "d29", 29},    {MultiDayCount::duration30, "d30", 30},
    {MultiDayCount::duration31, "d31", 31},    {MultiDayCount::duration365, "d365", 365},
    {MultiDayCount::duration366, "d366", 366},
};

constexpr auto rawValues(std::type_identity<MultiDayCount>) {
  return rawColumn(multiDayCountRows);
}

[[nodiscard]] constexpr std::int64_t numDays(MultiDayCount count) {
  return rowOf(multiDayCountRows, count).numDays;
}
/// "d29".
[[nodiscard]] constexpr std::string_view id(MultiDayCount count) {
  return rawValue(count);
}
/// A calendar page that shows the number of days.
[[nodiscard]] IconManagerIcon icon(MultiDayCount count);

/// The length of the period of this type that holds today's logical day.
[[nodiscard]] MultiDayCount multiDayCountTypeForCurrentPeriod(TaskFrequencyPeriodType type,
                                                              HHMMSS startOfDay, TimeZone timeZone,
                                                              Date now);

}  // namespace velloro
