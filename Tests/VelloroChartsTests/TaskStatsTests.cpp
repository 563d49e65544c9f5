// Random logs through the statistics, and the same told plainly: what decides each period is looked
// up in a map, and each point is summed day by day.

#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/Locale.h"
#include "Support/Fixtures.h"
#include "VelloroCharts/TrophyRoomTaskStats.h"
#include "VelloroCore/Log/LogEntryRules.h"

#include <map>
#include <random>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Counts = std::map<std::int64_t, std::int64_t>;
using Period = TaskChartsTimePeriod;

class Cases {
 public:
  std::vector<TaskLogRow> rows() {
    std::vector<TaskLogRow> rows;
    for (std::int64_t rest = number(400); rest > 0; --rest) {
      const YYYYMMDD day = YYYYMMDD{2022, 11, 1}.add(number(520), {});
      rows.push_back({.entryDate = static_cast<std::int32_t>(day.intValue()),
                      .entryType = static_cast<std::int16_t>(number(16)),
                      .createdTimestamp = day.dateAt(HHMMSS::midnight, {.h = number(30)}, zone),
                      .createdTimeZone = number(3) == 0 ? "Asia/Kathmandu" : ""});
    }
    std::ranges::sort(rows, [](const TaskLogRow& a, const TaskLogRow& b) {
      return std::tie(a.entryDate, a.createdTimestamp) > std::tie(b.entryDate, b.createdTimestamp);
    });
    return rows;
  }
  TaskLogRules rules() {
    const auto modes = allCases<DayMode>();
    return {.frequency = {.dayMode = modes[static_cast<std::size_t>(number(std::ssize(modes)))]},
            .startOfDay = {.h = number(24)},
            .firstDayOfWeek = allCases<DayOfWeek>()[static_cast<std::size_t>(number(7))],
            .timeZone = zone,
            .isNegative = number(2) == 0,
            .now = YYYYMMDD{2024, 3, number(31) + 1}.dateAt({}, {.h = number(24)}, zone)};
  }
  std::int64_t number(std::int64_t below) { return static_cast<std::int64_t>(random_()) % below; }

  const TimeZone zone = TimeZone::fromIdentifier("Europe/Berlin").value();

 private:
  std::mt19937 random_{19};
};

struct Plain {
  GlobalChartData all;
  bool isTodayOpen = true;
  YYYYMMDD earliest, latest;
  std::vector<double> data;
};

double share(const Counts& completed, const Counts& entries, YYYYMMDD from, YYYYMMDD to,
             bool& isEmpty) {
  double done = 0, all = 0;
  for (YYYYMMDD day = from; day <= to; day = day.nextDay({})) {
    if (completed.contains(day.intValue()))
      done += static_cast<double>(completed.at(day.intValue()));
    if (entries.contains(day.intValue())) all += static_cast<double>(entries.at(day.intValue()));
  }
  isEmpty = all == 0;
  return isEmpty ? 0 : done / all;
}

std::vector<double> plainPoints(const Plain& plain, int kind, std::int64_t most) {
  std::vector<double> points;
  const auto& [all, isTodayOpen, earliest, latest, data] = plain;
  bool isEmpty = false;
  const auto add = [&](YYYYMMDD from, YYYYMMDD to) {
    const double value =
        share(all.globalCompletedByDay, all.globalNumEntriesByDay, from, to, isEmpty);
    if (kind != 0 || !isEmpty) points.push_back(value);
  };
  const std::int64_t days = earliest.distance(latest, true, {});
  const std::int64_t span = std::max<std::int64_t>((days + most - 1) / most, 1);
  for (YYYYMMDD at = earliest; at <= latest;) {
    const YYYYMMDD to = kind == 0 ? at.add(span - 1, {}) : kind == 1 ? at.yyyymm().lastDay() : at;
    add(kind == 1 ? at.yyyymm().firstDay() : at, to);
    at = to.nextDay({});
  }
  return points;
}

Plain plainly(const std::vector<TaskLogRow>& rows, const TaskLogRules& rules,
              const YYYYMMDD::Range& range, int kind, std::int64_t most) {
  Plain plain;
  std::map<std::int64_t, const TaskLogRow*> decided;
  const YYYYMMDD today = rules.today();
  for (const TaskLogRow& row : rows) {
    if (!isFull(row.type()) || row.entryDate > rules.period(today).finishDate.intValue()) continue;
    const TaskLogRow*& stored = decided[rules.startOfPeriod(*row.date()).intValue()];
    const bool goesFirst =
        stored == nullptr || isFullEntryBefore(row.type(), stored->type(), rules.isNegative);
    if (goesFirst) stored = &row;
  }
  plain.isTodayOpen = !decided.contains(rules.startOfPeriod(today).intValue());
  for (const auto& [start, row] : decided) {
    const YYYYMMDD day = *row->date();
    const bool done = isCompletedFull(row->type());
    const bool counts = done || isMissedFull(row->type());
    if (!counts || day > today || (range.minDate && day < *range.minDate) ||
        (range.maxDate && day > *range.maxDate)) {
      continue;
    }
    GlobalChartData& all = plain.all;
    const auto hour = HHMMSS::fromDate(*row->createdTimestamp, row->timeZone(rules.timeZone)).h;
    ++all.globalNumNonSkippedEntries;
    ++all.globalNumEntriesByDay[day.intValue()];
    if (done) ++all.globalCompletedByDay[day.intValue()];
    ++(done ? all.globalTotalCompleted : all.globalTotalMissed);
    ++(done ? all.globalCompletionsByHour : all.globalMissesByHour)[hour];
    ++(done ? all.globalCompletionsByDayOfWeek : all.globalMissesByDayOfWeek)[day.dayOfWeek({})];
  }
  plain.earliest = plain.latest = today;
  if (plain.all.globalNumEntriesByDay.empty()) return plain;
  plain.earliest = YYYYMMDD::fromIntValue(plain.all.globalNumEntriesByDay.begin()->first).value();
  plain.latest = std::min(range.maxDate.value_or(today), today);
  plain.data = plainPoints(plain, kind, most);
  return plain;
}

TEST(TaskStats, AreThoseOfAPlainReadingOfTheLog) {
  Cases cases;
  for (int round = 0; round < 600; ++round) {
    const auto rows = cases.rows();
    const TaskLogRules rules = cases.rules();
    const YYYYMM month{2023 + cases.number(2), 1 + cases.number(12)};
    const Period periods[] = {Period::allTime(), Period::thisYear(), Period::year(month.y),
                              Period::thisMonth(), Period::month(month)};
    const int kinds[] = {0, 1, 1, 2, 2};
    const auto which = static_cast<std::size_t>(cases.number(5));
    const std::int64_t most = 1 + cases.number(40);
    const Plain plain =
        plainly(rows, rules, periods[which].days(rules.today()), kinds[which], most);
    const auto tally = TaskLogTally::fromLog(rows, rules, periods[which]);
    GlobalChartData all;
    all.add(tally);
    ASSERT_EQ(all, plain.all) << round;
    const auto stats = TrophyRoomTaskStats::fromTally(
        tally, {.rules = rules, .timePeriod = periods[which], .maxNumPoints = most});
    const AllTimeChart& chart = stats.allTimeChart;
    ASSERT_EQ(chart.data, plain.data) << round;
    ASSERT_EQ(std::tuple(chart.earliestDate, chart.latestDate, chart.statsAccountForToday),
              std::tuple(plain.earliest, plain.latest, !plain.isTodayOpen))
        << round;
  }
}

TEST(AllTimeChart, CutsAHundredDaysIntoSpansOfFour) {
  std::vector<TaskLogTally::Day> days;
  for (std::int64_t i = 0; i < 100; ++i) {
    days.push_back({{.completed = 1}, YYYYMMDD{2024, 1, 1}.add(i, {})});
  }
  const auto points = [&](const Period& period, YYYYMMDD from, YYYYMMDD to, std::int64_t most) {
    return AllTimeChart::createDataPoints({period, from, to, days, most}).size();
  };
  EXPECT_EQ(points(Period::allTime(), {2024, 1, 1}, {2024, 4, 9}, 30), 25u);
  EXPECT_EQ(points(Period::allTime(), {2024, 1, 1}, {2024, 4, 9}, 0), 1u);
  EXPECT_EQ(points(Period::allTime(), {2024, 1, 1}, {2024, 12, 30}, 365), 100u);
  EXPECT_EQ(points(Period::year(2024), {2024, 1, 1}, {2024, 12, 31}, 2), 12u);
  EXPECT_EQ(points(Period::allTime(), {2024, 1, 2}, {2024, 1, 1}, 30), 0u);
}

TEST(AllTimeChart, TellsWhatItCovers) {
  VirtualEnvironment environment;  // 2024-03-07, a Thursday
  const Locale english = Locale::fromIdentifier("en_US");
  AllTimeChart chart = AllTimeChart::empty({}, TimeZone::gmt(), Date::now());
  EXPECT_EQ(chart.labels(english, Date::now()), (SummaryLabels{"7 Mar 24", {}, "Today"}));
  EXPECT_EQ(chart.dataPoints(english).size(), 2u);
  chart.data = {0.25, 0.5, 1};
  const auto points = chart.dataPoints(english);
  EXPECT_EQ(points[1].formattedValue, "50%");
  EXPECT_TRUE(points[0].highlightMarker && points[2].highlightMarker && !points[1].highlightMarker);
  chart.earliestDate = {2024, 1, 31};
  EXPECT_EQ(chart.displayNumberOfPeriods(Date::now()), 37);
  chart.statsAccountForToday = false;
  EXPECT_EQ(chart.displayNumberOfPeriods(Date::now()), 36);
  EXPECT_EQ(*chart.labels(english, Date::now()).trailingText, "Yesterday");
  chart.latestDate = {2024, 3, 2};
  EXPECT_EQ(*chart.labels(english, Date::now()).trailingText, "Saturday");
  chart.latestDate = {2024, 2, 29};
  EXPECT_EQ(chart.briefLabels(english, Date::now()), (SummaryLabels{"Jan 2024", {}, "Feb 2024"}));
  EXPECT_EQ(*chart.veryBriefLabels(english, Date::now()).centerText, "All time");
  chart.timePeriod = Period::year(2024);
  EXPECT_EQ(chart.displayNumberOfPeriods(Date::now()), 365);  // of 366, without today
  chart.timePeriod = Period::month({2024, 2});
  EXPECT_EQ(chart.displayNumberOfPeriods(Date::now()), 29);
  EXPECT_EQ(*chart.labels(english, Date::now()).centerText, "February 2024");
}

TEST(TrophyRoomTaskStats, KeepsItsForms) {
  VirtualEnvironment environment;
  const DaysOfWeekChart week{{{DayOfWeek::sunday, 0.5}, {DayOfWeek::tuesday, 0.25}}};
  EXPECT_EQ(week.sortedValues(DayOfWeek::monday)[1],
            (DaysOfWeekChart::Value{DayOfWeek::tuesday, 0.25, 0.5}));
  EXPECT_EQ(DaysOfWeekChart{}.sortedValues(DayOfWeek::monday)[6],
            (DaysOfWeekChart::Value{DayOfWeek::sunday, 0, 0}));
  TrophyRoomTaskStats stats{.timePeriod = Period::month({2024, 3}),
                            .direction = TrophyRoomTaskStats::Direction::negative,
                            .streak = {3, 9},
                            .pct = 0.75,
                            .numCompletions = 3,
                            .numMisses = 1,
                            .daysOfWeekChart = week,
                            .timeOfDayChart = {{{7, 1.0}, {23, 0.5}}}};
  stats.allTimeChart = AllTimeChart::empty({.h = 4}, TimeZone::gmt(), Date::now());
  expectFixture("TrophyRoomTaskStats", stats);
  EXPECT_EQ(stats.timeOfDayChart.dataPoints(Locale::fromIdentifier("de_DE"))[23].label, "23:00");
  expectFixture("GlobalChartData", GlobalChartData{4,
                                                   3,
                                                   1,
                                                   {{7, 3}},
                                                   {{23, 1}},
                                                   {{20240306, 3}},
                                                   {{20240306, 4}},
                                                   {{DayOfWeek::sunday, 3}},
                                                   {}});
}

}  // namespace
}  // namespace velloro
