#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"

#include "Foundation/Time/CivilDay.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriod.h"

#include <algorithm>

namespace velloro {
namespace {

struct Page {
  MultiDayCount value;
  IconManagerIcon icon;
};

constexpr Page pages[] = {
    {MultiDayCount::duration1, IconManagerIcon::duration_1},
    {MultiDayCount::duration7, IconManagerIcon::duration_7},
    {MultiDayCount::duration14, IconManagerIcon::duration_14},
    {MultiDayCount::duration28, IconManagerIcon::duration_28},
    {MultiDayCount::duration29, IconManagerIcon::duration_29},
    {MultiDayCount::duration30, IconManagerIcon::duration_30},
    {MultiDayCount::duration31, IconManagerIcon::duration_31},
    {MultiDayCount::duration365, IconManagerIcon::duration_365},
    {MultiDayCount::duration366, IconManagerIcon::duration_366},
};

MultiDayCount countOf(std::int64_t days) {
  const auto* row = std::ranges::find(multiDayCountRows, days, &MultiDayCountRow::numDays);
  return row != std::end(multiDayCountRows) ? row->value : MultiDayCount::duration1;
}

}  // namespace

YYYYMMDD firstDate(TaskFrequencyPeriodType type, YYYYMMDD date, DayOfWeek firstDayOfWeek,
                   const CountedIn& timeZone) {
  if (type == TaskFrequencyPeriodType::day) return date;  // asked for each entry of a log
  return TaskFrequencyPeriod::fromDate(type, date, firstDayOfWeek, timeZone).startDate;
}

YYYYMMDD lastDate(TaskFrequencyPeriodType type, YYYYMMDD date, DayOfWeek firstDayOfWeek,
                  const CountedIn& timeZone) {
  return TaskFrequencyPeriod::fromDate(type, date, firstDayOfWeek, timeZone).finishDate;
}

IconManagerIcon icon(MultiDayCount count) {
  return rowOf(pages, count).icon;
}

MultiDayCount multiDayCountTypeForCurrentPeriod(TaskFrequencyPeriodType type, HHMMSS startOfDay,
                                                TimeZone timeZone, Date now) {
  const YYYYMM thisMonth = YYYYMM::thisMonth(startOfDay, timeZone, now);
  switch (type) {
    using enum TaskFrequencyPeriodType;
    case day:
      return MultiDayCount::duration1;
    case week:
      return MultiDayCount::duration7;
    case fortnight:
      return MultiDayCount::duration14;
    case month:
      return countOf(thisMonth.numberOfDays());
    case year:
      return isLeapYear(thisMonth.y) ? MultiDayCount::duration366 : MultiDayCount::duration365;
  }
  return MultiDayCount::duration1;
}

}  // namespace velloro
