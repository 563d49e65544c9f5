// The closing of periods over all frequencies, first weekdays and random logs: at once, day by day,
// and told plainly, with every question put to the whole log.

#include "VelloroCore/Log/TaskRecentHistory.h"
#include "VelloroCore/Status/PeriodClosing.h"
#include "VelloroCore/Status/TaskLogCounts.h"
#include "VelloroCore/Status/TaskLogSummary.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <random>
#include <tuple>

#include <gtest/gtest.h>

namespace velloro {
namespace {

constexpr YYYYMMDD created{2023, 12, 21};

/// A task and its log, at noon of some day.
struct Task {
  TaskLogRules rules;
  std::vector<TaskLogRow> rows = {};
  YYYYMMDD createdDay = created;
  YYYYMMDD since = createdDay;

  void setToday(YYYYMMDD day) {
    rules.now = day.dateAt(HHMMSS::midnight, HHMMSS::midday, rules.timeZone);
  }
  void add(const TaskLogRow& row) {
    const auto place = [](const TaskLogRow& one) {
      return std::tuple(one.entryDate, one.createdTimestamp);
    };
    rows.insert(std::ranges::lower_bound(rows, place(row), std::greater(), place), row);
  }
  [[nodiscard]] PeriodClosings due() const {
    return {.rules = rules, .since = since, .createdDay = createdDay};
  }
  std::vector<PeriodClosing> close() {
    const auto closings = due().fromLog(rowsWithin(rows, YYYYMMDD::Range::from(due().firstDay())));
    for (const PeriodClosing& closing : closings) add(closing.row(rules.now));
    since = rules.today();
    return closings;
  }
  /// The type of a period's closing with the whole log at hand.
  [[nodiscard]] TaskLogEntryType plainType(const TaskFrequencyPeriod& period) const {
    const auto createdOn = [] { return created; };
    const auto count = [&](YYYYMMDD from, YYYYMMDD to) {
      return NumUniqueCompletions::fromLog(rows, rules, from, to);
    };
    const auto last = [&](YYYYMMDD day) { return lastCompletedDate(rows, day); };
    return closingType(willSkip(period, {.rules = rules,
                                         .createdDay = createdOn,
                                         .numUniqueCompletions = count,
                                         .lastCompletedDate = last}),
                       rules.isNegative);
  }
  [[nodiscard]] TaskTemporalData kept() const {
    const auto log = TaskLogSummary::fromLog(rows, {.rules = rules, .to = rules.today()});
    const auto day = [](const auto& moment) {
      return moment ? std::optional(moment->first) : std::nullopt;
    };
    return {.streak = log.streak,
            .lastCompleted = day(log.lastCompleted),
            .lastMissed = day(log.lastMissed),
            .lastSkipped = std::max(day(log.lastSkipped), day(log.lastAllowableMiss))};
  }
};

void forAllTasks(const std::function<void(Task&)>& check) {
  for (const DayMode mode : allCases<DayMode>()) {
    for (const DayOfWeek first : allCases<DayOfWeek>()) {
      for (const bool isNegative : {false, true}) {
        Task task{.rules = {.frequency = {.dayMode = mode,
                                          .days = {DayOfWeek::monday, DayOfWeek::friday},
                                          .numCompletions = 3,
                                          .dayInterval = 4},
                            .firstDayOfWeek = first,
                            .isNegative = isNegative,
                            .now = {}}};
        SCOPED_TRACE(task.rules.frequency.debugDescription() + platform::debugDescription(first));
        check(task);
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

TEST(PeriodClosing, GivesEachPeriodThatHasEndedAnEntryOfItsOwn) {
  forAllTasks([](Task& task) {
    Task atOnce = task;
    std::vector<PeriodClosing> daily;
    YYYYMMDD covered = created.add(-1, {});
    for (std::int64_t day = 0; day <= 70; ++day) {
      task.setToday(created.add(day, {}));
      for (const PeriodClosing& closing : task.close()) {
        EXPECT_EQ(task.rules.period(closing.date), closing.period);
        EXPECT_TRUE(closing.period.endsBefore(created.add(day, {})));
        EXPECT_TRUE(closing.period.startDate <= covered.add(1, {})) << "no day is left out";
        covered = closing.period.finishDate;
        daily.push_back(closing);
      }
    }
    atOnce.rules.now = task.rules.now;
    EXPECT_EQ(atOnce.close(), daily) << "no period depends on when one looks";
    const auto history = TaskRecentHistory::fromLog(
        task.rows, {.rules = task.rules, .to = task.rules.today(), .createdDay = created});
    for (const auto& [period, status] : history.unsortedPeriods()) {
      const auto closing = std::ranges::find(daily, period, &PeriodClosing::period);
      if (closing == daily.end()) continue;
      EXPECT_EQ(status == TaskCalendarPeriodStatus::skipped, isSkipped(closing->type));
    }
  });
}

TEST(PeriodClosing, ComesToEachDayOnceWhereFortnightsOverlap) {
  forAllTasks([](Task& task) {
    if (measurementDuration(task.rules.frequency.dayMode) != TaskFrequencyPeriodType::fortnight) {
      return;
    }
    for (std::int64_t made = 0; made < 28; ++made) {
      task.rows.clear();
      task.createdDay = task.since = created.add(made, {});
      std::vector<PeriodClosing> closings;
      for (std::int64_t day = 0; day <= 60; ++day) {
        task.setToday(task.createdDay.add(day, {}));
        std::ranges::copy(task.close(), std::back_inserter(closings));
      }
      ASSERT_GE(closings.size(), 3U);
      EXPECT_TRUE(closings[0].period.contains(task.createdDay)) << made;
      for (std::size_t i = 1; i < closings.size(); ++i) {
        EXPECT_EQ(closings[i].period, closings[i - 1].period.next({}));
        EXPECT_EQ(closings[i].period.startDate, closings[i - 1].period.finishDate.add(1, {}))
            << made;
      }
    }
  });
}

TEST(PeriodClosing, FollowsFromTheLogAndKeepsWhatTheLogSays) {
  std::mt19937 random(20240307);
  const auto number = [&](unsigned below) { return static_cast<int>(random() % below); };
  int numKept = 0;
  forAllTasks([&](Task& task) {
    for (int round = 0; round < 12; ++round) {
      task.rows.clear();
      task.since = created;
      const int end = 10 + number(60);
      for (int entries = number(20); entries > 0; --entries) {
        const YYYYMMDD day = created.add(number(static_cast<unsigned>(end)), {});
        task.add({.entryDate = static_cast<std::int32_t>(day.intValue()),
                  .entryType = static_cast<std::int16_t>(number(15)),
                  .createdTimestamp = Date::since1970(number(10))});
      }
      task.setToday(created.add(end, {}));
      task.close();
      task.setToday(created.add(end + 1 + number(40), {}));
      const TaskTemporalData before = task.kept();
      Task plain = task;
      const auto closings = task.close();
      const auto kept = afterClosing(before, plain.rows, task.rules, closings);
      for (const PeriodClosing& closing : closings) {
        ASSERT_EQ(closing.type, plain.plainType(closing.period));
        plain.add(closing.row(task.rules.now));
      }
      ASSERT_EQ(kept.value_or(task.kept()), task.kept());
      if (kept && !closings.empty()) ++numKept;
    }
  });
  EXPECT_GT(numKept, 500) << "most logs need no walk";
}

}  // namespace
}  // namespace velloro
