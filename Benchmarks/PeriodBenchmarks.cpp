// Periods of dates and whether a day is due, beside libical's times and its walk over a recurrence.

#include "Days.h"
#include "VelloroCore/Frequency/TaskFrequency.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <libical/ical.h>

namespace velloro {
namespace {

using benchmark::RegisterBenchmark;
using benchmark::State;

constexpr YYYYMMDD seriesStart{.y = 2000, .m = 1, .d = 3};

icaltimetype icalTime(const YYYYMMDD& day) {
  icaltimetype time{};
  time.is_date = 1;
  time.year = static_cast<int>(day.y);
  time.month = static_cast<int>(day.m);
  time.day = static_cast<int>(day.d);
  return time;
}

YYYYMMDD fromIcal(const icaltimetype& time) {
  return {.y = time.year, .m = time.month, .d = time.day};
}

/// A series of due days from `seriesStart` on.
class IcalSeries {
 public:
  explicit IcalSeries(const char* rule)
      : iterator_(
            icalrecur_iterator_new(icalrecurrencetype_from_string(rule), icalTime(seriesStart)),
            &icalrecur_iterator_free) {}

  void start(const YYYYMMDD& day) { icalrecur_iterator_set_start(iterator_.get(), icalTime(day)); }
  YYYYMMDD next() { return fromIcal(icalrecur_iterator_next(iterator_.get())); }

 private:
  std::unique_ptr<icalrecur_iterator, decltype(&icalrecur_iterator_free)> iterator_;
};

SkipMode skipMode(const TaskFrequency& frequency, const YYYYMMDD& day,
                  const std::optional<TaskFrequencyPeriod>& last = {}) {
  const DatedPeriod today = frequency.period(day, DayOfWeek::monday, {});
  return frequency.shouldSkipPeriod(
      {.period = today.period,
       .startOfDay = HHMMSS::midnight,
       .daysInPeriodCallback =
           [](const auto&) {
             return TaskFrequency::DaysInPeriodCallbackResponse{.numUniqueCompletions = 2,
                                                                .taskCreatedDate = seriesStart};
           },
       .dayIntervalCallback = [&](const auto&) { return TaskFrequency::DayIntervalResponse{last}; },
       .now = {}});
}

bool isDue(SkipMode mode) {
  return !isSkip(mode);
}

void registerPeriod(const char* group, TaskFrequencyPeriodType type,
                    std::pair<YYYYMMDD, YYYYMMDD> (*byIcal)(icaltimetype)) {
  RegisterBenchmark((std::string(group) + "/velloro").c_str(), [=](State& state) {
    overAll(state, days(), [=](const YYYYMMDD& day, const auto&) {
      return TaskFrequencyPeriod::fromDate(type, day, DayOfWeek::monday, {});
    });
  });
  if (byIcal == nullptr) return;
  RegisterBenchmark((std::string(group) + "/libical").c_str(), [=](State& state) {
    for (const YYYYMMDD& day : days()) {
      const auto period = TaskFrequencyPeriod::fromDate(type, day, DayOfWeek::monday, {});
      if (byIcal(icalTime(day)) != std::pair(period.startDate, period.finishDate)) {
        return state.SkipWithError("another period");
      }
    }
    overAll(state, days(), [=](const YYYYMMDD& day, const auto&) { return byIcal(icalTime(day)); });
  });
}

std::pair<YYYYMMDD, YYYYMMDD> weekByIcal(icaltimetype day) {
  constexpr int monday = 2;
  icaltimetype end = icaltime_from_day_of_year(icaltime_start_doy_week(day, monday), day.year);
  const YYYYMMDD start = fromIcal(end);
  icaltime_adjust(&end, 6, 0, 0, 0);
  return {start, fromIcal(end)};
}

std::pair<YYYYMMDD, YYYYMMDD> monthByIcal(icaltimetype day) {
  const int length = icaltime_days_in_month(day.month, day.year);
  return {{day.year, day.month, 1}, {day.year, day.month, length}};
}

/// Whether single days, in no order, are due.
void registerQuestions() {
  static const TaskFrequency frequency{
      .days = {DayOfWeek::monday, DayOfWeek::wednesday, DayOfWeek::friday}};
  RegisterBenchmark("is_weekday_due/velloro", [](State& state) {
    overAll(state, days(),
            [](const YYYYMMDD& day, const auto&) { return skipMode(frequency, day); });
  });
  RegisterBenchmark("is_weekday_due/libical", [](State& state) {
    // A weekly series that is moved into the middle of a week leaves out the rest of that week.
    IcalSeries series("FREQ=DAILY;BYDAY=MO,WE,FR");
    const auto isDueByIcal = [&](const YYYYMMDD& day) {
      series.start(day);
      return series.next() == day;
    };
    for (const YYYYMMDD& day : days()) {
      if (day >= seriesStart && isDueByIcal(day) != isDue(skipMode(frequency, day))) {
        return state.SkipWithError("another answer");
      }
    }
    overAll(state, days(), [&](const YYYYMMDD& day, const auto&) { return isDueByIcal(day); });
  });
  const std::pair<const char*, DayMode> counts[] = {
      {"skip_by_week/velloro", DayMode::numberOfDaysInWeek},
      {"skip_by_fortnight/velloro", DayMode::numberOfDaysInFortnight},
      {"skip_by_month/velloro", DayMode::numberOfDaysInMonth},
      {"skip_by_year/velloro", DayMode::numberOfDaysInYear}};
  for (const auto& [name, mode] : counts) {
    RegisterBenchmark(name, [mode = mode](State& state) {
      const TaskFrequency counting{.dayMode = mode, .numCompletions = 4};
      overAll(state, days(),
              [&](const YYYYMMDD& day, const auto&) { return skipMode(counting, day); });
    });
  }
}

/// A walk over ten years of days, each due one of them done; the time told is that of one day.
void registerWalk(const char* group, const TaskFrequency& frequency, const char* rule) {
  static constexpr std::int64_t length = 3653;
  const auto walk = [=] {
    std::int64_t due = 0;
    std::optional<TaskFrequencyPeriod> last;
    YYYYMMDD day = seriesStart;
    for (std::int64_t i = 0; i < length; ++i, day = day.nextDay({})) {
      if (!isDue(skipMode(frequency, day, last))) continue;
      last = frequency.period(day, DayOfWeek::monday, {}).period;
      ++due;
    }
    return due;
  };
  RegisterBenchmark((std::string(group) + "/velloro").c_str(), [=](State& state) {
    while (state.KeepRunningBatch(length)) benchmark::DoNotOptimize(walk());
  });
  const auto walkByIcal = [=, end = seriesStart.add(length, {})] {
    std::int64_t due = 0;
    for (IcalSeries series(rule); series.next() < end;) ++due;
    return due;
  };
  RegisterBenchmark((std::string(group) + "/libical").c_str(), [=](State& state) {
    if (walkByIcal() != walk()) return state.SkipWithError("another number of days");
    while (state.KeepRunningBatch(length)) benchmark::DoNotOptimize(walkByIcal());
  });
}

[[maybe_unused]] const bool registered = [] {
  registerPeriod("week_of_day", TaskFrequencyPeriodType::week, weekByIcal);
  registerPeriod("fortnight_of_day", TaskFrequencyPeriodType::fortnight, nullptr);
  registerPeriod("month_of_day", TaskFrequencyPeriodType::month, monthByIcal);
  registerPeriod("year_of_day", TaskFrequencyPeriodType::year, nullptr);
  registerQuestions();
  registerWalk("walk_weekdays",
               {.days = {DayOfWeek::monday, DayOfWeek::wednesday, DayOfWeek::friday}},
               "FREQ=WEEKLY;BYDAY=MO,WE,FR");
  registerWalk("walk_interval", {.dayMode = DayMode::dayInterval, .dayInterval = 3},
               "FREQ=DAILY;INTERVAL=3");
  return true;
}();

}  // namespace
}  // namespace velloro
