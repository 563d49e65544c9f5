#include "VelloroCore/Frequency/TaskFrequency.h"

#include <algorithm>
#include <chrono>
#include <optional>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using enum SkipMode;
using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::weekday;
using std::chrono::year_month_day;

// The standard library's calendar and plain walks from day to day are the oracle.
constexpr sys_days firstDay = std::chrono::January / 1 / std::chrono::year(2024);
constexpr sys_days lastDay = std::chrono::December / 31 / std::chrono::year(2024);

YYYYMMDD date(sys_days day) {
  const year_month_day ymd(day);
  return {.y = int{ymd.year()}, .m = unsigned{ymd.month()}, .d = unsigned{ymd.day()}};
}

TaskFrequencyPeriod dayPeriod(sys_days day, DayOfWeek first = DayOfWeek::sunday) {
  return TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType::day, date(day), first, {});
}

/// What a task's log answers, and how often it is asked.
struct Log {
  std::int64_t done = 0;
  sys_days created = firstDay;
  std::optional<sys_days> last = {};
  int countQuestions = 0;
  int intervalQuestions = 0;
  Date now = {};

  SkipMode answer(const TaskFrequency& frequency, const TaskFrequencyPeriod& period) {
    return frequency.shouldSkipPeriod(
        {.period = period,
         .startOfDay = HHMMSS::midnight,
         .daysInPeriodCallback =
             [&](const TaskFrequencyPeriod& asked) {
               EXPECT_EQ(&asked, &period);
               ++countQuestions;
               return TaskFrequency::DaysInPeriodCallbackResponse{.numUniqueCompletions = done,
                                                                  .taskCreatedDate = date(created)};
             },
         .dayIntervalCallback =
             [&](const TaskFrequencyPeriod&) {
               ++intervalQuestions;
               return last ? TaskFrequency::DayIntervalResponse{dayPeriod(*last)}
                           : TaskFrequency::DayIntervalResponse{};
             },
         .now = now});
  }
};

/// The counting period that holds a day, found by walking.
struct Counting {
  sys_days front;
  sys_days back;
  std::int64_t left = 0;  ///< The days behind the day itself.

  Counting(DayMode mode, sys_days day, weekday first) : front(day), back(day) {
    if (mode == DayMode::numberOfDaysInMonth || mode == DayMode::numberOfDaysInYear) {
      const auto isIn = [&](sys_days other) {
        const year_month_day a(day), b(other);
        return a.year() == b.year() &&
               (mode == DayMode::numberOfDaysInYear || a.month() == b.month());
      };
      while (isIn(front - days(1))) front -= days(1);
      while (isIn(back + days(1))) back += days(1);
    } else {
      const bool isFortnight = mode == DayMode::numberOfDaysInFortnight;
      if (isFortnight && isSecondWeek(day)) front -= days(7);
      while (weekday(front) != first) front -= days(1);
      back = front + days(isFortnight ? 13 : 6);
    }
    for (sys_days other = day; other < back; other += days(1)) ++left;
  }

  /// From the anchor on, weeks are first and second ones in turn.
  static bool isSecondWeek(sys_days day) {
    bool isSecond = false;
    sys_days week = std::chrono::January / 1 / std::chrono::year(2000);
    for (; week + days(7) <= day; week += days(7)) isSecond = !isSecond;
    return isSecond;
  }

  [[nodiscard]] SkipMode expected(std::int64_t count, const Log& log) const {
    const std::int64_t length = (back - front).count() + 1;
    if (log.created >= front && log.created <= back && length < count) count = length;
    if (count < 1) count = 1;
    if (log.done >= count) return willSkipWithIndicator;
    return log.done + left < count ? willMissWithIndicator : willSkipWithoutIndicator;
  }
};

void compareCounts(const TaskFrequencyPeriod& period, const Counting& counting,
                   const TaskFrequency& frequency) {
  const std::int64_t count = frequency.numCompletions;
  for (std::int64_t done : {count + 1, count, count - 1, count - counting.left, count / 2}) {
    for (const sys_days created : {counting.front - days(1), counting.front, counting.back}) {
      Log log{.done = std::max<std::int64_t>(done, 0), .created = created};
      ASSERT_EQ(log.answer(frequency, period), counting.expected(count, log))
          << frequency.debugDescription() << period.startDate.debugDescription() << " " << done;
      ASSERT_TRUE(log.countQuestions == 1 && log.intervalQuestions == 0);
    }
  }
}

TEST(SkipSweep, CountsDays) {
  const auto compareAll = [](DayMode mode, DayOfWeek first) {
    for (sys_days day = firstDay; day <= lastDay; day += days(1)) {
      const Counting counting(mode, day, weekday(static_cast<unsigned>(first)));
      const auto period = dayPeriod(day, first);
      for (std::int64_t count = 0; count <= (counting.back - counting.front).count() + 3; ++count) {
        compareCounts(period, counting, {.dayMode = mode, .numCompletions = count});
        if (HasFatalFailure()) return;
      }
    }
  };
  for (const DayOfWeek first : allCases<DayOfWeek>()) {
    compareAll(DayMode::numberOfDaysInWeek, first);
    compareAll(DayMode::numberOfDaysInFortnight, first);
  }
  compareAll(DayMode::numberOfDaysInMonth, DayOfWeek::wednesday);
  compareAll(DayMode::numberOfDaysInYear, DayOfWeek::wednesday);
}

TEST(SkipSweep, ChoosesWeekdays) {
  for (sys_days day = firstDay; day <= lastDay; day += days(1)) {
    for (unsigned bits = 0; bits < 128; ++bits) {
      const bool isDue = (bits >> weekday(day).c_encoding() & 1) != 0;
      Log log;
      const auto answer = log.answer({.days = EnumSet<DayOfWeek>(bits)}, dayPeriod(day));
      ASSERT_EQ(answer, isDue ? willMissWithoutIndicator : willSkipWithIndicator) << bits;
      ASSERT_EQ(log.countQuestions + log.intervalQuestions, 0);
    }
    Log log;
    const TaskFrequency monthly{.dayMode = DayMode::specificDaysOfMonth};
    ASSERT_EQ(log.answer(monthly, dayPeriod(day)), willMissWithoutIndicator);
    ASSERT_EQ(log.countQuestions + log.intervalQuestions, 0);
  }
}

TEST(SkipSweep, WaitsForTheInterval) {
  for (sys_days day = firstDay; day <= lastDay; day += days(1)) {
    for (std::int64_t interval = 2; interval <= 30; ++interval) {
      const TaskFrequency frequency{.dayMode = DayMode::dayInterval, .dayInterval = interval};
      Log never;
      ASSERT_EQ(never.answer(frequency, dayPeriod(day)), willMissWithoutIndicator);
      std::int64_t gone = -1;
      for (sys_days last = day + days(1); last > day - days(34); last -= days(1), ++gone) {
        Log log{.last = last};
        ASSERT_EQ(log.answer(frequency, dayPeriod(day)),
                  gone < interval ? willSkipWithIndicator : willMissWithoutIndicator)
            << gone << " of " << interval;
        ASSERT_TRUE(log.intervalQuestions == 1 && log.countQuestions == 0);
      }
    }
  }
}

TEST(SkipSweep, WarnsOnTheLastDayOfATotal) {
  for (const DayMode mode : {DayMode::aggregateOverWeek, DayMode::aggregateOverFortnight,
                             DayMode::aggregateOverMonth, DayMode::aggregateOverYear}) {
    const TaskFrequency frequency{.dayMode = mode};
    const auto period = frequency.period(date(firstDay + days(40)), DayOfWeek::monday, {}).period;
    bool isOver = false;
    for (sys_days day = firstDay - days(20); day <= lastDay + days(20); day += days(1)) {
      isOver = isOver || date(day) == period.finishDate;
      Log log{.now = date(day).dateAt(HHMMSS::midnight, HHMMSS::midday, TimeZone::gmt())};
      ASSERT_EQ(log.answer(frequency, period),
                isOver ? willMissWithIndicator : willMissWithoutIndicator)
          << frequency.debugDescription() << date(day).debugDescription();
      ASSERT_EQ(log.countQuestions + log.intervalQuestions, 0);
    }
  }
}

}  // namespace
}  // namespace velloro
